#pragma once

#include <tessel/Value.h>

namespace tsl
{

/// Converts a comparison result that is negative, zero or positive.
constexpr Value::eCompare ToCompareResult(int iSign)
{
    return iSign < 0 ? Value::eLess : iSign > 0 ? Value::eGreater : Value::eEqual;
}

} // namespace tsl
