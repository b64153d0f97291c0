#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayoutCollection.h>

namespace tsl
{

/// The layout of a collection of values; the default format is "${dump}". The elements have the layouts
/// that were added for their classes.
///
///     tsl::ValueAbstractValueCollectionConverterLayout oLayout;
///     oLayout.SetCollPrePostfix("[", "]");
///     oLayout.SetSeparator("; "); // 1, 2, 3 become "[1; 2; 3]"
///
/// The class is described as abstract, so that Root::GetCopy cannot make one; the copy constructor can.
///
/// Threads and ownership: as ValueConverterLayoutCollection.
class TSL_EXPORT ValueAbstractValueCollectionConverterLayout
    : public Described<ValueAbstractValueCollectionConverterLayout, ValueConverterLayoutCollection,
          ClassDescription::eAbstract>
{
public:
    ValueAbstractValueCollectionConverterLayout();
    /// With other texts; see ValueConverterLayout.
    explicit ValueAbstractValueCollectionConverterLayout(ValueString const & sFormat);
    ValueAbstractValueCollectionConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat);
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueAbstractValueCollectionConverterLayout,
    ValueConverterLayoutCollection, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The text form of a collection. The one identifier is "dump", all elements as in "(1,2,3)"; it needs a
/// collection layout. Reading a replacement is an assertion failure.
///
/// Threads: any. The library owns its one converter; see ValueAbstractValueCollection::GetConverter.
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

template<>
TSL_EXPORT ClassDescription const &
Described<ValueAbstractValueCollectionConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
