#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayoutCollection.h>

namespace tsl
{

/// The layout of a NamedValue; the default format is "${name} ${value}". Name and value have the layouts
/// that were added for their classes.
///
///     tsl::NamedValueConverterLayout oLayout("${name}=${value}");
///     oLayout.AddLayout(new tsl::ValueIntegerConverterLayout("${%03d}")); // NamedValue("n", 5): "n=005"
///
/// Threads and ownership: as ValueConverterLayoutCollection.
class TSL_EXPORT NamedValueConverterLayout
    : public Described<NamedValueConverterLayout, ValueConverterLayoutCollection>
{
public:
    NamedValueConverterLayout();
    /// With other texts; see ValueConverterLayout.
    explicit NamedValueConverterLayout(ValueString const & sFormat);
    NamedValueConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat);
};

template<>
TSL_EXPORT ClassDescription const &
Described<NamedValueConverterLayout, ValueConverterLayoutCollection>::GetStaticClassDesc();

/// The text form of NamedValue, with the identifiers "name" and "value"; others are unknown. "value"
/// without a value is an assertion failure, and so is reading a replacement.
///
/// Threads: any. The library owns its one converter; see NamedValue::GetConverter.
class TSL_EXPORT NamedValueConverter : public Described<NamedValueConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<NamedValueConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
