#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

namespace tsl
{

/// A value that is always null, for places that need a reference to a value when there is none.
///
///     Value const & GetSetting(Value const * pSetting)
///     {
///         return pSetting ? *pSetting : ValueNull::Null();
///     }
///
/// Any number of threads may use an object, which has no content.
class TSL_EXPORT ValueNull : public Described<ValueNull, Value>
{
public:
    ValueNull() = default;

    bool IsNull() const override { return true; }
    void SetNull() override {}
    ValueConverter const & GetConverter() const override;

    /// A shared object.
    static ValueNull const & Null();

protected:
    void DoCopy(Root const &) override {}
    // Never called: CompareTo handles null values.
    eCompare DoCompareTo(Value const &) const override { return eNotComparable; }
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueNull, Value>::GetStaticClassDesc();

} // namespace tsl
