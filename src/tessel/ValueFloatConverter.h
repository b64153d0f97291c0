#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>
#include <tessel/ValueInt32.h>

namespace tsl
{

/// The layout of a ValueFloat32; the default format is "${%f}".
///
///     tsl::ValueFloatConverterLayout oLayout;
///     oLayout.SetDecimalPlaces(2); // as ValueFloatConverterLayout("${%.2f}")
///
/// Threads and ownership: as ValueConverterLayout.
class TSL_EXPORT ValueFloatConverterLayout : public Described<ValueFloatConverterLayout, ValueConverterLayout>
{
public:
    ValueFloatConverterLayout();

    /// Another format, without a number of decimal places. One that SetFormat refuses is an assertion
    /// failure.
    explicit ValueFloatConverterLayout(ValueString const & sFormat);

    ValueFloatConverterLayout(ValueFloatConverterLayout const & oSource) = default;
    ValueFloatConverterLayout & operator=(ValueFloatConverterLayout const & oSource) = default;

    /// Null if no number is set.
    ValueInt32 const & GetDecimalPlaces() const { return m_iDecimalPlaces; }

    /// Replaces the format by "${%.2f}" for 2 and so on, by "${%f}" for null. A number that is no precision
    /// for printf is an assertion failure when the layout is used.
    void SetDecimalPlaces(ValueInt32 const & iDecimalPlaces);

protected:
    void DoCopy(Root const & oSource) override;

    /// Sets the format that follows from the number of decimal places.
    void UpdateFormat();

private:
    ValueInt32 m_iDecimalPlaces;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueFloatConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

/// Text and back for ValueFloat32. Numbers have a decimal point, whatever the locale of the process is.
///
/// Identifiers without an "f" are unknown. Writing: an identifier is a printf format for a double: text,
/// `%%`, and at most one conversion of `f F e E g G a A` with flags, width and precision of at most 3,998;
/// length modifiers h and l are dropped. Any other is an assertion failure that names the format.
///
/// Reading: whatever the format says, a number at the front of the text: white space, a sign, digits, a
/// point with digits, and an exponent after e, E, d or D. At least one part is needed; a number without
/// digits, such as "-", is 0. White space after the number is removed, too. Code 2 if there is no number,
/// code 4 for one that is out of range of a float; nothing changes then.
///
/// Threads: any. The library owns its one converter; see ValueFloat32::GetConverter.
class TSL_EXPORT ValueFloatConverter : public Described<ValueFloatConverter, ValueConverter>
{
public:
    ValueFloatConverter();

    ValueConverterLayout const & GetDefaultLayout() const override;

protected:
    bool DoGetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const override;
    Result DoConvertReplacement(ValueString & sText, Value & oValue, ValueConverterLayout const & oLayout,
        ValueString const & sIdentifier) const override;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueFloatConverter, ValueConverter>::GetStaticClassDesc();

} // namespace tsl
