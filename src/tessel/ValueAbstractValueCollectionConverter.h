#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayoutCollection.h>

namespace tsl
{

/// The layout of a collection of values; the default format is "${dump}". The elements take the layouts
/// that were added for their classes; separator, opening and closing text stand around them.
///
/// The class counts as abstract, so that Root::GetCopy cannot make one; the copy constructor can.
class TSL_EXPORT ValueAbstractValueCollectionConverterLayout
    : public Described<ValueAbstractValueCollectionConverterLayout, ValueConverterLayoutCollection,
          ClassDescription::eAbstract>
{
public:
    ValueAbstractValueCollectionConverterLayout();
    explicit ValueAbstractValueCollectionConverterLayout(ValueString const & sFormat);
    ValueAbstractValueCollectionConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat);
};

extern template ClassDescription const & Described<ValueAbstractValueCollectionConverterLayout,
    ValueConverterLayoutCollection, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The text form of a collection. The identifier "dump" stands for all elements, as in "(1,2,3)"; it is
/// known only with a collection layout, and no other is. Reading a replacement is an assertion failure.
class TSL_EXPORT ValueAbstractValueCollectionConverter
    : public Described<ValueAbstractValueCollectionConverter, ValueConverter>
{
public:
    ValueConverterLayout const & GetDefaultLayout() const override;

protected:
    bool DoGetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const override;
    Result DoConvertReplacement(ValueString & sText, Value & oValue, ValueConverterLayout const & oLayout,
        ValueString const & sIdentifier) const override;
};

extern template ClassDescription const &
Described<ValueAbstractValueCollectionConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
