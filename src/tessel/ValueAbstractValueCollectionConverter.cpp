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
    : ValueConverterLayoutCollection(sFormat)
{
}

ValueAbstractValueCollectionConverterLayout::ValueAbstractValueCollectionConverterLayout(
    ValueString const & sFormat, ValueString const & sNullFormat)
    : ValueConverterLayoutCollection(sFormat, sNullFormat)
{
}

ClassDescription const & ValueAbstractValueCollectionConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueAbstractValueCollectionConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueAbstractValueCollectionConverterLayout>(
        &ValueConverterLayoutCollection::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * ValueAbstractValueCollectionConverterLayout::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

ClassDescription const & ValueAbstractValueCollectionConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueAbstractValueCollectionConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueAbstractValueCollectionConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueAbstractValueCollectionConverter::CreateNew()
{
    return new ValueAbstractValueCollectionConverter;
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
