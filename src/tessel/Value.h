#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

class ValueConverter;
class ValueString;

/// Abstract base of the values: typed data that can be null.
///
///     ValueInt32 oNumber; // null
///     oNumber = 5;
///     ValueString sText("n = ");
///     oNumber.AddAsString(sText); // "n = 5"
///
/// Each value class has one shared converter, default layout and null value. The library owns them; any
/// thread may use them, and they are never changed. One thread at a time uses a value.
class TSL_EXPORT Value : public Described<Value, Root, ClassDescription::eAbstract>
{
public:
    /// The outcome of a comparison.
    enum eCompare
    {
        eNotComparable = 0, ///< the classes differ, or exactly one value is null
        eEqual = 1,
        eLess = 2, ///< this object is less than the argument
        eGreater = 3
    };

    /// Copies nothing: the content is in the derived class.
    Value(Value const &) = default;
    Value & operator=(Value const &) { return *this; }

    /// The description of the value's class.
    ClassDescription const & GetClassDesc() const override;
    ~Value() override = default;

    /// Whether there is no content.
    virtual bool IsNull() const = 0;

    /// Deletes the content.
    virtual void SetNull() = 0;

    /// The converter of the class, which converts values to text and back.
    virtual ValueConverter const & GetConverter() const = 0;

    /// Compares with a value of the same class. Two null values of one class are equal.
    eCompare CompareTo(Value const & oOther) const;

    /// Appends the value in its default layout to s, and returns s.
    ValueString & AddAsString(ValueString & s) const;

protected:
    Value() = default;

    /// Compares with another value. The caller has checked that both have the same class and that neither is
    /// null.
    virtual eCompare DoCompareTo(Value const & oOther) const = 0;
};

template<>
TSL_EXPORT ClassDescription const & Described<Value, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
