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

/// Sets format and null format from a chapter. Layouts accept any text; a wrong replacement in a format fails when
/// it is used.
void ReadFormats(tsl::ValueConverterLayout & oLayout, char const * sChapter)
{
    static_cast<void>(oLayout.SetFormat(GetSetting(sChapter, "Format", oLayout.GetFormat()),
        GetSetting(sChapter, "NullFormat", oLayout.GetNullFormat())));
}

/// Sets the layouts of integers and floats inside a collection or a named value.
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

    // The layouts of the value inside a named value.
    auto pNamed = std::make_unique<tsl::NamedValueConverterLayout>();
    ReadFormats(*pNamed, "Values/Named");
    AddNumberLayouts(*pNamed);
    oLayout.AddLayout(pNamed.release());
    return oLayout;
}
