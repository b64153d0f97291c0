#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueString; the default format is "${%s}".
///
///     tsl::ValueStringConverterLayout const oLayout("${%-20s}|"); // padded to 20 bytes
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ValueStringConverterLayout
    : public Described<ValueStringConverterLayout, ValueConverterLayout>
{
public:
    ValueStringConverterLayout();

    /// Another format. One that SetFormat refuses is an assertion failure.
    explicit ValueStringConverterLayout(ValueString const & sFormat);

    ~ValueStringConverterLayout() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueStringConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// The text form of ValueString.
///
/// Writing: an identifier is a printf format for a text: text, `%%`, and at most one `%s` with flags, width
/// and precision of at most 3,998. Any other is an assertion failure that names the format, and so are a
/// null value and a replacement of more than 3,998 bytes.
///
/// Reading: only the null format. A replacement is an assertion failure.
///
/// Threads: any. The library owns its one converter; see ValueString::GetConverter.
class TSL_EXPORT ValueStringConverter : public Described<ValueStringConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<ValueStringConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
