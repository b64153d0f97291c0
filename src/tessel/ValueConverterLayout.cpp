#include <tessel/ValueConverterLayout.h>

#include <tessel/Assertion.h>

#include <utility>

namespace tsl
{

struct TSL_HIDDEN ValueConverterLayout::Private
{
    ValueString sPrefix{""};
    ValueString sPostfix{""};
    ValueString sNullFormat{"NULL"};
    ValueString sFormat;
};

[[noreturn]] static void FailFormat(char const * sClassName, ValueString const & sFormat)
{
    String sText;
    sText << sClassName << "::" << sClassName << " : Ungültiger Formatstring! String : \""
          << (sFormat.IsNull() ? "" : sFormat.c_str()) << '"';
    XAssertionFailed("false", sText);
}

ValueConverterLayout::ValueConverterLayout() : m(std::make_unique<Private>()) {}

ValueConverterLayout::ValueConverterLayout(ValueString const & sFormat) : ValueConverterLayout()
{
    DemandFormat(sFormat, "ValueConverterLayout");
}

ValueConverterLayout::ValueConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat)
    : ValueConverterLayout()
{
    if (!SetFormat(sFormat, sNullFormat))
        FailFormat("ValueConverterLayout", sFormat);
}

ValueConverterLayout::ValueConverterLayout(ValueConverterLayout const & oSource)
    : Root(oSource), m(std::make_unique<Private>(*oSource.m))
{
}

ValueConverterLayout & ValueConverterLayout::operator=(ValueConverterLayout const & oSource)
{
    *m = *oSource.m;
    return *this;
}

ClassDescription const & ValueConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueConverterLayout>(
        &Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

ValueConverterLayout::~ValueConverterLayout() = default;

Root * ValueConverterLayout::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

void ValueConverterLayout::DoCopy(Root const & oSource)
{
    *m = *static_cast<ValueConverterLayout const &>(oSource).m;
}

bool ValueConverterLayout::VerifyFormat(ValueString const &, ValueString const &) const
{
    return true;
}
ValueConverterLayout const & ValueConverterLayout::GetSuitableLayout(Value const &) const
{
    return *this;
}

ValueString const & ValueConverterLayout::GetFormat() const
{
    return m->sFormat;
}
ValueString const & ValueConverterLayout::GetNullFormat() const
{
    return m->sNullFormat;
}
ValueString const & ValueConverterLayout::GetPrefix() const
{
    return m->sPrefix;
}
ValueString const & ValueConverterLayout::GetPostfix() const
{
    return m->sPostfix;
}

bool ValueConverterLayout::SetFormat(ValueString const & sFormat)
{
    return SetFormat(sFormat, m->sNullFormat);
}

bool ValueConverterLayout::SetFormat(ValueString const & sFormat, ValueString const & sNullFormat)
{
    if (!VerifyFormat(sFormat, sNullFormat))
        return false;

    // Either text may be the layout's own other one.
    ValueString sNewNullFormat(sNullFormat);
    m->sFormat = sFormat;
    m->sNullFormat = std::move(sNewNullFormat);
    return true;
}

void ValueConverterLayout::SetPrefix(ValueString const & sPrefix)
{
    m->sPrefix = sPrefix;
}
void ValueConverterLayout::SetPostfix(ValueString const & sPostfix)
{
    m->sPostfix = sPostfix;
}

void ValueConverterLayout::DemandFormat(ValueString const & sFormat, char const * sClassName)
{
    if (!SetFormat(sFormat))
        FailFormat(sClassName, sFormat);
}

} // namespace tsl
