#pragma once

namespace tsl
{

/// Works out the logarithms that CompareRelTo needs. The library does so once while it is loaded, before
/// anybody can compare.
void LoadFloatConstants();

} // namespace tsl
