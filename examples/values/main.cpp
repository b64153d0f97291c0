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

/// Reads the text into a value of the class, if it has the form that the class wants.
template<class ValueClass>
std::unique_ptr<tsl::Value> ReadAs(tsl::String const & sText)
{
    auto pValue = std::make_unique<ValueClass>();
    if (pValue->GetConverter().ConvertFromText(sText, *pValue).IsError())
        return nullptr;
    return pValue;
}

/// An integer, a float, or else the text itself.
std::unique_ptr<tsl::Value> ReadPlainValue(tsl::String const & sText)
{
    if (auto pInteger = ReadAs<tsl::ValueInt32>(sText))
        return pInteger;
    if (auto pFloat = ReadAs<tsl::ValueFloat32>(sText))
        return pFloat;
    return std::make_unique<tsl::ValueString>(sText);
}

/// A text such as "weight=72.5" is a value with a name.
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
class Values : public tsl::ConsoleApplication
{
public:
    Values() : ConsoleApplication(new ValuesConfig) {}

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
    tsl::ConsoleApplication & oValues = tsl::ConsoleApplication::Instance(&Values::Create);
    try
    {
        // Without the program's own name, which is no value.
        return oValues.Main(iCount - 1, pArguments + 1);
    }
    catch (tsl::Exception const & oException)
    {
        // A format that cannot be used, for instance; the log file has it already.
        std::cerr << "values: " << oException.GetText() << std::endl;
        return oException.GetResult().GetErrorCode();
    }
}
