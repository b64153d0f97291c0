#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a Result; the default format is "Number=${No},Text=${Text},File=${File},Line=${Line}".
///
///     tsl::ResultConverterLayout const oLayout("${Text} (${No})"); // "Not found. (5)"
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ResultConverterLayout : public Described<ResultConverterLayout, ValueConverterLayout>
{
public:
    ResultConverterLayout();

    /// Another format. One that SetFormat refuses is an assertion failure.
    explicit ResultConverterLayout(ValueString const & sFormat);

    ~ResultConverterLayout() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ResultConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// The text form of Result, with the identifiers "No", "Text", "Line" and "File"; any other gives
/// the empty text. Category, cause and history are not shown. Reading a replacement fails with code 3.
///
/// Threads: any. The library owns its one converter; see Result::GetConverter.
class TSL_EXPORT ResultConverter : public Described<ResultConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<ResultConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
