#pragma once

#include <tessel/Assertion.h>
#include <tessel/Value.h>

#include <typeinfo>

namespace tsl
{

/// The value as one of the class that a converter serves. A converter that is handed any other value is an
/// assertion failure: the converter to use is always the value's own.
template<class ValueClass, class AnyValue>
ValueClass & CastValue(AnyValue & oValue)
{
    // Nearly always it is of the very class, which is told much faster than that it derives from it.
    if (typeid(oValue) == typeid(ValueClass)) [[likely]]
        return static_cast<ValueClass &>(oValue);

    auto * const pValue = dynamic_cast<ValueClass *>(&oValue);
    if (!pValue)
        XAssertionFailed("pValue", "ValueConverter : Value hat eine andere Klasse!");
    return *pValue;
}

} // namespace tsl
