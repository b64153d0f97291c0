#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

class ValueConverter;
class ValueString;

/// Abstract base of every typed value that can be null.
///
/// Each value class hands out one shared converter, layout and null value; they are made on first use,
/// which is safe on any thread, belong to the library, and are never written to. A value itself is used
/// by one thread at a time.
class TSL_EXPORT Value : public Described<Value, Root, ClassDescription::eAbstract>
{
public:
    /// The outcome of a comparison.
    enum eCompare
    {
        eNotComparable = 0, ///< of different classes, or exactly one is null
        eEqual = 1,
        eLess = 2, ///< the receiver is less than the argument
        eGreater = 3
    };

    /// Copying at this level copies nothing; the content lies in the derived class.
    Value(Value const &) = default;
    Value & operator=(Value const &) { return *this; }

    ClassDescription const & GetClassDesc() const override;
    ~Value() override = default;

    virtual bool IsNull() const = 0;

    /// Drops the content.
    virtual void SetNull() = 0;

    /// The converter of the value's class, which turns it into text and back.
    virtual ValueConverter const & GetConverter() const = 0;

    /// Compares values of one class; two null values of one class are equal.
    eCompare CompareTo(Value const & oOther) const;

    /// Appends the value in its default layout to the text and returns that.
    ValueString & AddAsString(ValueString & s) const;

protected:
    Value() = default;

    /// Compares with another value of the same class; neither is null.
    virtual eCompare DoCompareTo(Value const & oOther) const = 0;
};

extern template ClassDescription const &
Described<Value, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
