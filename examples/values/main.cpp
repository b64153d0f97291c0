#include "../ReportingProgram.h"
#include "Layouts.h"
#include "ValueVector.h"

#include <tessel/Tessel.h>

#include <iostream>
#include <vector>

namespace
{

class ValuesConfig : public tsl::ConsoleApplicationConfig
{
};

/// Converts the text to a value of the class; a null pointer if the text has another form.
template<class ValueClass>
std::unique_ptr<tsl::Value> ReadAs(tsl::String const & sText)
{
    auto pValue = std::make_unique<ValueClass>();
    if (pValue->GetConverter().ConvertFromText(sText, *pValue).IsError())
        return nullptr;
    return pValue;
}

/// Makes an integer, a float, or else a text of it.
std::unique_ptr<tsl::Value> ReadPlainValue(tsl::String const & sText)
{
    if (auto pInteger = ReadAs<tsl::ValueInt32>(sText))
        return pInteger;
    if (auto pFloat = ReadAs<tsl::ValueFloat32>(sText))
        return pFloat;
    return std::make_unique<tsl::ValueString>(sText);
}

/// Makes a value with a name of a text such as "weight=72.5".
std::unique_ptr<tsl::Value> ReadValue(tsl::String const & sText)
{
    int const iEqual = sText.Find('=');
    if (iEqual < 0)
        return ReadPlainValue(sText);

    auto const iNameLength = static_cast<unsigned int>(iEqual);
    return std::make_unique<tsl::NamedValue>(
        sText.Left(iNameLength), ReadPlainValue(sText.Mid(iNameLength + 1)).release());
}

/// Prints the values that are given on the command line, in the layout that the ini file describes.
class Values : public ReportingProgram
{
public:
    Values() : ReportingProgram("values", new ValuesConfig) {}

    static tsl::Application * Create() { return new Values; }

protected:
    tsl::Result Run() override
    {
        std::vector<tsl::String> vTexts;
        GetConfig().GetCmdLineParser().GetParameters(vTexts);

        ValueVector oValues;
        for (tsl::String const & sText : vTexts)
            oValues.Add(ReadValue(sText));

        tsl::ValueString sLine;
        oValues.GetConverter().ConvertToText(oValues, sLine, ReadLayout());
        std::cout << sLine.s_str() << std::endl;
        return tsl::Result();
    }
};

} // namespace

int main(int iCount, char ** pArguments)
{
    return Values::Start("values", &Values::Create, iCount, pArguments);
}
