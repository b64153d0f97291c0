#pragma once

/// What depends on the kind of processor.
namespace tsl::Platform
{

/// Lets a moment pass, for a thread that reads a value over and over.
void Relax();

} // namespace tsl::Platform
