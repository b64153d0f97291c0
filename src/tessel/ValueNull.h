#pragma once

#include <tessel/Export.h>
#include <tessel/Value.h>

namespace tsl
{

/// The value that is always null and has no content; it stands where a reference to no value is needed.
class TSL_EXPORT ValueNull : public Value
{
public:
    ValueNull() = default;

    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    bool IsNull() const override { return true; }
    void SetNull() override {}
    ValueConverter const & GetConverter() const override;

    /// The shared object.
    static ValueNull const & Null();

protected:
    void DoCopy(Root const &) override {}
    eCompare DoCompareTo(Value const &) const override { return eNotComparable; }
};

} // namespace tsl
