#include <tessel/ValueString.h>

#include "ArgumentList.h"
#include "CompareResult.h"
#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueStringConverter.h>

#include <utility>

namespace tsl
{

static constexpr char const * NULL_TEXT = "Invalid operation. ValueString is NULL";

template<>
constexpr ClassSource CLASS_SOURCE<ValueString>{};
template<>
ClassDescription const & Described<ValueString, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// The source becomes null: std::string leaves a moved-from text with unspecified content.
ValueString::ValueString(ValueString && sSource) noexcept
    : m_bNull(std::exchange(sSource.m_bNull, true)), m_sText(std::move(sSource.m_sText))
{
    sSource.m_sText.Clear();
}

ValueString & ValueString::operator=(ValueString && sSource) noexcept
{
    if (&sSource != this)
    {
        m_bNull = std::exchange(sSource.m_bNull, true);
        m_sText = std::move(sSource.m_sText);
        sSource.m_sText.Clear();
    }
    return *this;
}

ValueString & ValueString::operator=(std::string const & sSource)
{
    m_sText = sSource;
    m_bNull = false;
    return *this;
}

ValueString & ValueString::operator=(char c)
{
    m_sText = c;
    m_bNull = false;
    return *this;
}

ValueString & ValueString::operator=(char const * sSource)
{
    m_sText = sSource;
    m_bNull = false;
    return *this;
}

void ValueString::SetNull()
{
    m_sText.Clear();
    m_bNull = true;
}

void ValueString::Clear()
{
    m_sText.Clear();
    m_bNull = false;
}

ValueConverter const & ValueString::GetConverter() const
{
    return LastingObject<ValueStringConverter>();
}

ValueString const & ValueString::Null()
{
    return LastingObject<ValueString>();
}

void ValueString::Insert(unsigned int pos, ValueString const & s)
{
    if (m_bNull || s.m_bNull)
        XAssertionFailed("!m_bNull && !s.m_bNull", NULL_TEXT);
    m_sText.Insert(pos, s.m_sText);
}

int ValueString::Replace(ValueString const & sWhat, ValueString const & sWith, unsigned int pos)
{
    if (m_bNull)
        XAssertionFailed("!m_bNull", NULL_TEXT);
    if (sWith.m_bNull)
        XAssertionFailed("!m_bNull", NULL_TEXT);
    if (sWhat.m_bNull)
        XAssertionFailed("!m_bNull", NULL_TEXT);
    return m_sText.Replace(sWhat.m_sText, sWith.m_sText, pos);
}

int ValueString::Compare(ValueString const & s) const
{
    if (m_bNull || s.m_bNull)
        XAssertionFailed("!m_bNull && !Source.m_bNull", NULL_TEXT);
    return m_sText.Compare(s.m_sText);
}

void ValueString::Format(char const * sFormat, ...)
{
    va_list oArguments;
    va_start(oArguments, sFormat);
    ArgumentListScope const oScope(oArguments);
    FormatArgList(sFormat, oArguments);
}

void ValueString::FormatArgList(char const * sFormat, va_list oArguments)
{
    m_sText.FormatArgList(sFormat, oArguments);
    m_bNull = false;
}

ValueString & ValueString::operator<<(ValueString const & s)
{
    if (s.m_bNull)
        XAssertionFailed("!s.IsNull()", NULL_TEXT);
    return Private::Append(*this, s.m_sText);
}

void ValueString::DoCopy(Root const & oSource)
{
    *this = static_cast<ValueString const &>(oSource);
}

Value::eCompare ValueString::DoCompareTo(Value const & oOther) const
{
    return ToCompareResult(m_sText.Compare(static_cast<ValueString const &>(oOther).m_sText));
}

void ValueString::Private::FailNull(char const * sExpression, char const * sFile, int iLine)
{
    XAssertionFailed(sExpression, NULL_TEXT, sFile, iLine);
}

} // namespace tsl
