#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <memory>

namespace tsl
{

/// A value of any class with a name.
///
///     NamedValue oSpeed("speed", ValueInt32(120));
///     oSpeed.AddAsString(sText);
///
/// The object owns its value. It is null if it has no value, if its value is null, or if its name is null. A
/// NamedValueConverterLayout defines its text; it cannot be read from text. One thread at a time uses an
/// object.
class TSL_EXPORT NamedValue : public Described<NamedValue, Value>
{
public:
    /// Null, without a name and a value.
    NamedValue() = default;
    explicit NamedValue(ValueString const & sName) : m_sName(sName) {}

    /// With a copy of the value, made by Root::GetCopy.
    NamedValue(ValueString const & sName, Value const & oValue);

    /// Takes ownership of the value; null for none.
    NamedValue(ValueString const & sName, Value * pValue) : m_sName(sName), m_pValue(pValue) {}

    /// A copy of a null object has neither name nor value.
    NamedValue(NamedValue const & oSource);
    NamedValue & operator=(NamedValue const & oSource);

    bool IsNull() const override;

    /// Makes the name null and deletes the value.
    void SetNull() override;

    ValueConverter const & GetConverter() const override;

    /// The name, null at first.
    ValueString const & GetName() const { return m_sName; }
    void SetName(ValueString const & sName) { m_sName = sName; }

    /// The value, valid until it is replaced. Without a value the assertion "m_pValue" fails.
    Value & GetValue();
    Value const & GetValue() const;

    /// Takes ownership of the value, null for none, and deletes the former one unless it is the same object.
    void SetValue(Value * pValue);

    /// Stores a copy of the value. If the present value has the same class, it is assigned to; otherwise it
    /// is deleted and replaced. A ValueNull means no value.
    void SetValue(Value const & oValue);

    /// Compare by CompareTo. If the objects are not comparable, only != is true.
    bool operator==(NamedValue const & oOther) { return CompareTo(oOther) == eEqual; }
    bool operator!=(NamedValue const & oOther) { return CompareTo(oOther) != eEqual; }
    bool operator>(NamedValue const & oOther) { return CompareTo(oOther) == eGreater; }
    bool operator>=(NamedValue const & oOther);
    bool operator<(NamedValue const & oOther) { return CompareTo(oOther) == eLess; }
    bool operator<=(NamedValue const & oOther);

    /// A constant left operand is compared without the null checks of CompareTo: two null names are equal,
    /// and if the names are equal, both objects must have values.
    bool operator==(NamedValue const & oOther) const { return DoCompareTo(oOther) == eEqual; }

    // The same for other right operands. C++20 also considers == with exchanged operands. Without these
    // overloads some calls would be ambiguous, or the right operand would become the receiver.
    /// The same for operands that are not constant.
    bool operator==(NamedValue & oOther) { return CompareTo(oOther) == eEqual; }
    bool operator==(NamedValue && oOther) { return CompareTo(oOther) == eEqual; }
    bool operator==(NamedValue & oOther) const { return DoCompareTo(oOther) == eEqual; }
    bool operator==(NamedValue && oOther) const { return DoCompareTo(oOther) == eEqual; }

protected:
    void DoCopy(Root const & oSource) override;

    /// Compares the names and, if they are equal, the values.
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    ValueString m_sName;
    std::unique_ptr<Value> m_pValue;
};

template<>
TSL_EXPORT ClassDescription const & Described<NamedValue, Value>::GetStaticClassDesc();

} // namespace tsl
