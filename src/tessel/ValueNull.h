#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

namespace tsl
{

/// The value that is always null and has no content; it stands where a reference to no value is needed.
class TSL_EXPORT ValueNull : public Described<ValueNull, Value>
{
public:
    ValueNull() = default;

    bool IsNull() const override { return true; }
    void SetNull() override {}
    ValueConverter const & GetConverter() const override;

    /// The shared object.
    static ValueNull const & Null();

protected:
    void DoCopy(Root const &) override {}
    eCompare DoCompareTo(Value const &) const override { return eNotComparable; }
};

extern template ClassDescription const & Described<ValueNull, Value>::GetStaticClassDesc();

} // namespace tsl
