#pragma once

#include <tessel/Export.h>

namespace tsl
{

/// Compare two numbers with a tolerance: 0 if their difference is at most the tolerance, 1 if a is greater,
/// otherwise -1, also for NaN. Any thread may call.
TSL_EXPORT int CompareAbsTo(double a, double b, double fTolerance);
TSL_EXPORT int CompareAbsTo(float a, float b, float fTolerance);

/// The tolerance is one unit in the significant decimal digit iDigits of a, counted from 1: by default the
/// 14th of a double and the 5th of a float. It depends on a alone, so exchanging the numbers may change the
/// result. For a = 0 it is 0. For a negative a the result is always -1.
TSL_EXPORT int CompareRelTo(double a, double b, int iDigits);
TSL_EXPORT int CompareRelTo(double a, double b);
TSL_EXPORT int CompareRelTo(float a, float b, int iDigits);
TSL_EXPORT int CompareRelTo(float a, float b);

} // namespace tsl
