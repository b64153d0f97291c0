#pragma once

#include <tessel/Assertion.h>
#include <tessel/Value.h>

namespace tsl
{

/// The value as one of the class that a converter serves. A converter that is handed any other value is an
/// assertion failure: the converter to use is always the value's own.
template<class ValueClass, class AnyValue>
ValueClass & CastValue(AnyValue & oValue)
{
    auto * const pValue = dynamic_cast<ValueClass *>(&oValue);
    if (!pValue)
        XAssertionFailed("pValue", "ValueConverter : Value hat eine andere Klasse!");
    return *pValue;
}

} // namespace tsl
