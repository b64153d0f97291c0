#include <tessel/NamedValue.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/NamedValueConverter.h>
#include <tessel/ValueNull.h>

#include <utility>

namespace tsl
{

static std::unique_ptr<Value> CopyOf(Value const & oValue)
{
    return std::unique_ptr<Value>(static_cast<Value *>(oValue.GetCopy()));
}

NamedValue::NamedValue(ValueString const & sName, Value const & oValue)
    : m_sName(sName), m_pValue(CopyOf(oValue))
{
}

NamedValue::NamedValue(NamedValue const & oSource) : Described(oSource)
{
    NamedValue::DoCopy(oSource);
}

NamedValue & NamedValue::operator=(NamedValue const & oSource)
{
    Set(oSource);
    return *this;
}

template<>
constexpr ClassSource CLASS_SOURCE<NamedValue>{};
template<>
ClassDescription const & Described<NamedValue, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

bool NamedValue::IsNull() const
{
    return !m_pValue || m_pValue->IsNull() || m_sName.IsNull();
}

void NamedValue::SetNull()
{
    m_sName.SetNull();
    m_pValue.reset();
}

ValueConverter const & NamedValue::GetConverter() const
{
    return LastingObject<NamedValueConverter>();
}

Value & NamedValue::GetValue()
{
    return const_cast<Value &>(static_cast<NamedValue const *>(this)->GetValue());
}

Value const & NamedValue::GetValue() const
{
    if (!m_pValue)
        XAssertionFailed("m_pValue", "NamedValue::GetValue : Kein Wert vorhanden!");
    return *m_pValue;
}

void NamedValue::SetValue(Value * pValue)
{
    if (pValue != m_pValue.get())
        m_pValue.reset(pValue);
}

void NamedValue::SetValue(Value const & oValue)
{
    if (m_pValue && m_pValue->GetClassDesc() == oValue.GetClassDesc())
    {
        m_pValue->Set(oValue);
        return;
    }

    // Copy before the present value is deleted: the argument may be a part of it.
    bool const bContent = oValue.CompareTo(ValueNull::Null()) == eNotComparable;
    m_pValue = bContent ? CopyOf(oValue) : nullptr;
}

bool NamedValue::operator>=(NamedValue const & oOther)
{
    eCompare const eResult = CompareTo(oOther);
    return eResult == eGreater || eResult == eEqual;
}

bool NamedValue::operator<=(NamedValue const & oOther)
{
    eCompare const eResult = CompareTo(oOther);
    return eResult == eLess || eResult == eEqual;
}

void NamedValue::DoCopy(Root const & oSource)
{
    NamedValue const & oOther = static_cast<NamedValue const &>(oSource);
    if (oOther.IsNull())
    {
        SetNull();
        return;
    }

    // Copy the name first: the source may be a part of the present value, which SetValue may delete.
    ValueString sName(oOther.m_sName);
    SetValue(*oOther.m_pValue);
    m_sName = std::move(sName);
}

Value::eCompare NamedValue::DoCompareTo(Value const & oOther) const
{
    NamedValue const & oNamed = static_cast<NamedValue const &>(oOther);
    eCompare const eNames = m_sName.CompareTo(oNamed.m_sName);
    return eNames == eEqual ? GetValue().CompareTo(oNamed.GetValue()) : eNames;
}

} // namespace tsl
