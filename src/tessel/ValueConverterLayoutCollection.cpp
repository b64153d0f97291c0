#include <tessel/ValueConverterLayoutCollection.h>

#include <tessel/Assertion.h>
#include <tessel/ValueConverter.h>

#include <algorithm>
#include <list>
#include <utility>

namespace tsl
{

struct TSL_HIDDEN ValueConverterLayoutCollection::Private
{
    ValueString sSeparator{","};
    ValueString sCollPrefix{"("};
    ValueString sCollPostfix{")"};

    // The latest is the first.
    std::list<std::unique_ptr<ValueConverterLayout>> oLayouts;

    auto FindLayout(ClassDescription const & oClass)
    {
        return std::find_if(oLayouts.begin(), oLayouts.end(),
            [&](auto const & pLayout) { return pLayout->GetClassDesc() == oClass; });
    }

    void AddLayout(ValueConverterLayout * pLayout)
    {
        std::unique_ptr<ValueConverterLayout> pNew(pLayout);
        auto const oFormer = FindLayout(pLayout->GetClassDesc());
        if (oFormer != oLayouts.end() && oFormer->get() == pLayout)
        {
            static_cast<void>(pNew.release()); // owned already
            return;
        }

        oLayouts.push_front(std::move(pNew));
        if (oFormer != oLayouts.end())
            oLayouts.erase(oFormer);
    }

    void CopyFrom(Private const & oSource)
    {
        sSeparator = oSource.sSeparator;
        sCollPrefix = oSource.sCollPrefix;
        sCollPostfix = oSource.sCollPostfix;
        for (auto const & pLayout : oSource.oLayouts)
            AddLayout(static_cast<ValueConverterLayout *>(pLayout->GetCopy()));
    }
};

ValueConverterLayoutCollection::ValueConverterLayoutCollection() : m(std::make_unique<Private>()) {}

ValueConverterLayoutCollection::ValueConverterLayoutCollection(ValueString const & sFormat)
    : ValueConverterLayoutCollection()
{
    static_cast<void>(SetFormat(sFormat));
}

ValueConverterLayoutCollection::ValueConverterLayoutCollection(
    ValueString const & sFormat, ValueString const & sNullFormat)
    : ValueConverterLayoutCollection()
{
    static_cast<void>(SetFormat(sFormat, sNullFormat));
}

ValueConverterLayoutCollection::ValueConverterLayoutCollection(ValueConverterLayoutCollection const & oSource)
    : Described(oSource), m(std::make_unique<Private>())
{
    m->CopyFrom(*oSource.m);
}

ValueConverterLayoutCollection & ValueConverterLayoutCollection::operator=(
    ValueConverterLayoutCollection const & oSource)
{
    // Not by Set: the DoCopy of a derived class may be an assignment, which comes back here.
    if (&oSource != this)
        ValueConverterLayoutCollection::DoCopy(oSource);
    return *this;
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueConverterLayoutCollection>{};
template<>
ClassDescription const & Described<ValueConverterLayoutCollection, ValueConverterLayout,
    ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverterLayoutCollection::~ValueConverterLayoutCollection() = default;

ValueConverterLayout const & ValueConverterLayoutCollection::GetSuitableLayout(Value const & oValue) const
{
    ValueConverterLayout const & oDefault = oValue.GetConverter().GetDefaultLayout();
    auto const oLayout = m->FindLayout(oDefault.GetClassDesc());
    return oLayout == m->oLayouts.end() ? oDefault : **oLayout;
}

ValueString const & ValueConverterLayoutCollection::GetSeparator() const
{
    return m->sSeparator;
}
void ValueConverterLayoutCollection::SetSeparator(ValueString const & sSeparator)
{
    m->sSeparator = sSeparator;
}
ValueString const & ValueConverterLayoutCollection::GetCollPrefix() const
{
    return m->sCollPrefix;
}
ValueString const & ValueConverterLayoutCollection::GetCollPostfix() const
{
    return m->sCollPostfix;
}

void ValueConverterLayoutCollection::SetCollPrePostfix(
    ValueString const & sPrefix, ValueString const & sPostfix)
{
    // Either text may be the layout's own other one.
    ValueString sNewPostfix(sPostfix);
    m->sCollPrefix = sPrefix;
    m->sCollPostfix = std::move(sNewPostfix);
}

void ValueConverterLayoutCollection::AddLayout(ValueConverterLayout * pLayout)
{
    if (!pLayout)
        XAssertionFailed("pLayout", "ValueConverterLayoutCollection::AddLayout : Pointer ist NULL!");
    m->AddLayout(pLayout);
}

void ValueConverterLayoutCollection::DoCopy(Root const & oSource)
{
    ValueConverterLayout::DoCopy(oSource);
    m->CopyFrom(*static_cast<ValueConverterLayoutCollection const &>(oSource).m);
}

} // namespace tsl
