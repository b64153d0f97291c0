#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueNull. The format is empty; since the value is always null, its text is the null
/// format, "NULL".
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ValueNullConverterLayout : public Described<ValueNullConverterLayout, ValueConverterLayout>
{
public:
    ValueNullConverterLayout();
    ~ValueNullConverterLayout() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueNullConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// The text form of ValueNull: `tsl::ValueNull::Null().AddAsString(sText)` appends "NULL".
///
/// It knows no identifier, and reading a replacement is an assertion failure.
///
/// Threads: any. The library owns its one converter; see ValueNull::GetConverter.
class TSL_EXPORT ValueNullConverter : public Described<ValueNullConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<ValueNullConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
