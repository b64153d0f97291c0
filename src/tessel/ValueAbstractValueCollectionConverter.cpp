#include <tessel/ValueAbstractValueCollectionConverter.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueAbstractValueCollection.h>

#include <memory>

namespace tsl
{

static void AppendDump(ValueAbstractValueCollection const & oCollection, ValueString & sOut,
    ValueConverterLayoutCollection const & oLayout)
{
    sOut << oLayout.GetCollPrefix();

    std::unique_ptr<AbstractConstIterator<Value>> const pElement(oCollection.GetConstIterator());
    pElement->Begin();
    while (!pElement->IsEnd())
    {
        Value const & oElement = pElement->GetValue();
        oElement.GetConverter().ConvertToText(oElement, sOut, oLayout.GetSuitableLayout(oElement));
        pElement->Next();
        if (!pElement->IsEnd())
            sOut << oLayout.GetSeparator();
    }

    sOut << oLayout.GetCollPostfix();
}

ValueAbstractValueCollectionConverterLayout::ValueAbstractValueCollectionConverterLayout()
    : ValueAbstractValueCollectionConverterLayout("${dump}")
{
}

ValueAbstractValueCollectionConverterLayout::ValueAbstractValueCollectionConverterLayout(
    ValueString const & sFormat)
    : Described(sFormat)
{
}

ValueAbstractValueCollectionConverterLayout::ValueAbstractValueCollectionConverterLayout(
    ValueString const & sFormat, ValueString const & sNullFormat)
    : Described(sFormat, sNullFormat)
{
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueAbstractValueCollectionConverterLayout>{};
template<>
ClassDescription const & Described<ValueAbstractValueCollectionConverterLayout,
    ValueConverterLayoutCollection, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueAbstractValueCollectionConverter>{};
template<>
ClassDescription const &
Described<ValueAbstractValueCollectionConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverterLayout const & ValueAbstractValueCollectionConverter::GetDefaultLayout() const
{
    return LastingObject<ValueAbstractValueCollectionConverterLayout>();
}

bool ValueAbstractValueCollectionConverter::DoGetReplacement(Value const & oValue,
    ValueString const & sIdentifier, ValueString & sOut, ValueConverterLayout const & oLayout) const
{
    auto const pLayout = dynamic_cast<ValueConverterLayoutCollection const *>(&oLayout);
    auto const pCollection = dynamic_cast<ValueAbstractValueCollection const *>(&oValue);
    if (!pLayout || !pCollection || sIdentifier != "dump")
        return false;

    AppendDump(*pCollection, sOut, *pLayout);
    return true;
}

Result ValueAbstractValueCollectionConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    XAssertionFailed("0", "not implemented");
}

} // namespace tsl
