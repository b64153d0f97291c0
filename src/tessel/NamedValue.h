#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <memory>

namespace tsl
{

/// A value of any class under a name.
///
/// The object owns its value. It is null, in the sense of the value family, if it has no value, if its
/// value is null, or if its name is null. Its text is made through a NamedValueConverterLayout; it cannot
/// be read from text.
class TSL_EXPORT NamedValue : public Described<NamedValue, Value>
{
public:
    /// Null, without a name and a value.
    NamedValue() = default;
    explicit NamedValue(ValueString const & sName) : m_sName(sName) {}

    /// With a copy of the value, made by Root::GetCopy.
    NamedValue(ValueString const & sName, Value const & oValue);

    /// Takes the value over; null for none.
    NamedValue(ValueString const & sName, Value * pValue) : m_sName(sName), m_pValue(pValue) {}

    /// What is copied from a null source is null and has neither name nor value.
    NamedValue(NamedValue const & oSource);
    NamedValue & operator=(NamedValue const & oSource);

    bool IsNull() const override;

    /// Makes the name null and deletes the value.
    void SetNull() override;

    ValueConverter const & GetConverter() const override;

    ValueString const & GetName() const { return m_sName; }
    void SetName(ValueString const & sName) { m_sName = sName; }

    /// The held value, until it is replaced. If there is none, the assertion "m_pValue" fails.
    Value & GetValue();
    Value const & GetValue() const;

    /// Takes the value over, null for none, and deletes the one held before unless it is the same.
    void SetValue(Value * pValue);

    /// Holds a copy of the value. A held value of the same class stays the same object and takes over the
    /// content; any other is deleted. A ValueNull means no value.
    void SetValue(Value const & oValue);

    /// By CompareTo. Each holds only if the two can be compared, except for != which holds otherwise, too.
    bool operator==(NamedValue const & oOther) { return CompareTo(oOther) == eEqual; }
    bool operator!=(NamedValue const & oOther) { return CompareTo(oOther) != eEqual; }
    bool operator>(NamedValue const & oOther) { return CompareTo(oOther) == eGreater; }
    bool operator>=(NamedValue const & oOther);
    bool operator<(NamedValue const & oOther) { return CompareTo(oOther) == eLess; }
    bool operator<=(NamedValue const & oOther);

    /// A constant on the left compares without the checks of CompareTo: equal null names are equal here,
    /// and if the names are equal, both sides must have values.
    bool operator==(NamedValue const & oOther) const { return DoCompareTo(oOther) == eEqual; }

    // The same for other right operands. The language tries == with exchanged operands as well, and without
    // these that would fit as well or better in places: ambiguous, or the wrong operand is the receiver.
    bool operator==(NamedValue & oOther) { return CompareTo(oOther) == eEqual; }
    bool operator==(NamedValue && oOther) { return CompareTo(oOther) == eEqual; }
    bool operator==(NamedValue & oOther) const { return DoCompareTo(oOther) == eEqual; }
    bool operator==(NamedValue && oOther) const { return DoCompareTo(oOther) == eEqual; }

protected:
    void DoCopy(Root const & oSource) override;

    /// First the names, then the values.
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    ValueString m_sName;
    std::unique_ptr<Value> m_pValue;
};

extern template ClassDescription const & Described<NamedValue, Value>::GetStaticClassDesc();

} // namespace tsl
