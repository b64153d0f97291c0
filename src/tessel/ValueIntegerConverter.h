#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueInt32; the default format is "${%d}".
///
///     tsl::ValueIntegerConverterLayout const oLayout("${%05d}"); // 42 becomes "00042"
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ValueIntegerConverterLayout
    : public Described<ValueIntegerConverterLayout, ValueConverterLayout>
{
public:
    ValueIntegerConverterLayout();

    /// Another format. One that SetFormat refuses is an assertion failure.
    explicit ValueIntegerConverterLayout(ValueString const & sFormat);

    ~ValueIntegerConverterLayout() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueIntegerConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// Text and back for ValueInt32.
///
/// Writing: an identifier is a printf format for an int: text, `%%`, and at most one conversion of
/// `d i u x X o c` with flags, width and precision of at most 3,998; length modifiers h and l are dropped.
/// Any other is an assertion failure that names the format.
///
/// Reading: only the identifier "%d", from the whole of the remaining text: white space, a sign, 1 to 10
/// digits, white space. Failures have code 2.
///
/// Threads: any. The library owns its one converter; see ValueInt32::GetConverter.
class TSL_EXPORT ValueIntegerConverter : public Described<ValueIntegerConverter, ValueConverter>
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
TSL_EXPORT ClassDescription const & Described<ValueIntegerConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
