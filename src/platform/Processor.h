#pragma once

/// What depends on the kind of processor.
namespace tsl::Platform
{

/// A short pause for a thread that spins on a value.
void Relax();

} // namespace tsl::Platform
