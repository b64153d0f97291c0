#pragma once

#include <tessel/Export.h>

namespace tsl
{

/// Compare plain numbers with a tolerance: 0 if they are at most the tolerance apart, 1 if a is above b,
/// -1 otherwise, also if a number is NaN. Callable from any thread.
///
/// The tolerance of CompareAbsTo is given.
TSL_EXPORT int CompareAbsTo(double a, double b, double fTolerance);
TSL_EXPORT int CompareAbsTo(float a, float b, float fTolerance);

/// The tolerance of CompareRelTo is one unit in the given significant decimal digit of a, counted from 1;
/// without one in the 14th of a double and in the 5th of a float. It takes its size from a alone, so that
/// the answer may differ when the numbers change places. If a is 0, the tolerance is 0; if a is negative,
/// there is none, and the answer is -1.
TSL_EXPORT int CompareRelTo(double a, double b, int iDigits);
TSL_EXPORT int CompareRelTo(double a, double b);
TSL_EXPORT int CompareRelTo(float a, float b, int iDigits);
TSL_EXPORT int CompareRelTo(float a, float b);

} // namespace tsl
