#include "Layouts.h"

#include <tessel/Tessel.h>

#include <memory>

namespace
{

/// A text of the ini file, or the default.
tsl::String GetSetting(char const * sChapter, char const * sKey, tsl::ValueString const & sDefault)
{
    tsl::String sValue(sDefault.s_str());
    static_cast<void>(tsl::Support::GetAppIni().GetString(sChapter, sKey, sValue));
    return sValue;
}

/// Format and null format of a chapter. The library's layouts take all texts; a format with a wrong
/// replacement is found when it is used.
void ReadFormats(tsl::ValueConverterLayout & oLayout, char const * sChapter)
{
    static_cast<void>(oLayout.SetFormat(GetSetting(sChapter, "Format", oLayout.GetFormat()),
        GetSetting(sChapter, "NullFormat", oLayout.GetNullFormat())));
}

/// What integers and floats in the layout's value look like.
void AddNumberLayouts(tsl::ValueConverterLayoutCollection & oLayout)
{
    auto pInteger = std::make_unique<tsl::ValueIntegerConverterLayout>();
    ReadFormats(*pInteger, "Values/Integer");
    oLayout.AddLayout(pInteger.release());

    auto pFloat = std::make_unique<tsl::ValueFloatConverterLayout>();
    int iDecimalPlaces = 0;
    if (tsl::Support::GetAppIni().GetInt32("Values/Float", "DecimalPlaces", iDecimalPlaces))
        pFloat->SetDecimalPlaces(iDecimalPlaces);
    ReadFormats(*pFloat, "Values/Float");
    oLayout.AddLayout(pFloat.release());
}

} // namespace

tsl::ValueAbstractValueCollectionConverterLayout ReadLayout()
{
    tsl::ValueAbstractValueCollectionConverterLayout oLayout;
    ReadFormats(oLayout, "Values");
    oLayout.SetSeparator(GetSetting("Values", "Separator", oLayout.GetSeparator()));
    oLayout.SetCollPrePostfix(GetSetting("Values", "Opening", oLayout.GetCollPrefix()),
        GetSetting("Values", "Closing", oLayout.GetCollPostfix()));
    AddNumberLayouts(oLayout);

    // The value inside a named value takes its look from there.
    auto pNamed = std::make_unique<tsl::NamedValueConverterLayout>();
    ReadFormats(*pNamed, "Values/Named");
    AddNumberLayouts(*pNamed);
    oLayout.AddLayout(pNamed.release());
    return oLayout;
}
