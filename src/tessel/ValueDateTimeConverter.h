#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueDateTime; the default format is "${%d}", which gives the empty text.
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ValueDateTimeConverterLayout
    : public Described<ValueDateTimeConverterLayout, ValueConverterLayout>
{
public:
    ValueDateTimeConverterLayout();

    /// Another format. One that SetFormat refuses is an assertion failure.
    explicit ValueDateTimeConverterLayout(ValueString const & sFormat);

    ~ValueDateTimeConverterLayout() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueDateTimeConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// The text form of ValueDateTime, which shows nothing of the moment: every identifier but the standard
/// ones gives the empty text. Reading a replacement fails with code 2. For a text of the moment, use
/// the value's own operation:
///
///     tsl::String sText;
///     oMoment.Format("%Y-%m-%d", sText, tsl::TimeZone::GetLocal());
///
/// Threads: any. The library owns its one converter; see ValueDateTime::GetConverter.
class TSL_EXPORT ValueDateTimeConverter : public Described<ValueDateTimeConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<ValueDateTimeConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
