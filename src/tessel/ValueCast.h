#pragma once

#include <tessel/Assertion.h>
#include <tessel/Value.h>

#include <typeinfo>

namespace tsl
{

/// Casts the argument of a converter to the converter's value class. A value of another class is an assertion
/// failure.
template<class ValueClass, class AnyValue>
ValueClass & CastValue(AnyValue & oValue)
{
    // Fast path (R08): comparing the types is much faster than dynamic_cast, and the type is nearly always
    // exact.
    if (typeid(oValue) == typeid(ValueClass)) [[likely]]
        return static_cast<ValueClass &>(oValue);

    auto * const pValue = dynamic_cast<ValueClass *>(&oValue);
    if (!pValue)
        XAssertionFailed("pValue", "ValueConverter : Value hat eine andere Klasse!");
    return *pValue;
}

} // namespace tsl
