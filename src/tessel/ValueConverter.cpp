#include <tessel/ValueConverter.h>

#include <tessel/Assertion.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>

#include <string_view>

namespace tsl
{

namespace
{

constexpr std::string_view REPLACEMENT_OPENING = "${";
constexpr std::size_t IDENTIFIER_LENGTH_MIN = 1;

constexpr std::string_view ID_CLASS_NAME = "clsname";
constexpr std::string_view ID_CLASS_ID = "clsid";
constexpr std::string_view ID_NULL = "null";

/// One `${...}` of a format.
struct Replacement
{
    std::size_t iStart = std::string::npos; ///< of the "$"
    std::size_t iEnd = std::string::npos;   ///< of the "}"

    bool IsFound() const { return iStart != std::string::npos; }

    bool IsClosed() const
    {
        return iEnd != std::string::npos
               && iEnd >= iStart + REPLACEMENT_OPENING.size() + IDENTIFIER_LENGTH_MIN;
    }

    ValueString GetIdentifier(std::string const & sFormat) const
    {
        std::size_t const iIdentifier = iStart + REPLACEMENT_OPENING.size();
        return sFormat.substr(iIdentifier, iEnd - iIdentifier);
    }
};

Replacement FindReplacement(std::string const & sFormat, std::size_t iFrom)
{
    Replacement oFound;
    oFound.iStart = sFormat.find(REPLACEMENT_OPENING, iFrom);
    if (oFound.IsFound())
        oFound.iEnd = sFormat.find('}', oFound.iStart);
    return oFound;
}

bool BeginsWith(ValueString const & sText, std::string_view sHead)
{
    return std::string_view(sText.s_str()).substr(0, sHead.size()) == sHead;
}

/// Cuts the head off the text; false if the text begins otherwise.
bool CutHead(ValueString & sText, std::string_view sHead)
{
    if (!BeginsWith(sText, sHead))
        return false;
    sText.CutLeft(static_cast<unsigned int>(sHead.size()));
    return true;
}

bool CutNullWord(ValueString & sText)
{
    if (CutHead(sText, "true"))
        return true;
    if (!BeginsWith(sText, "false"))
        return false;

    // One byte more than the word goes with it.
    sText.CutLeft(6);
    return true;
}

/// Appends the text of a value's class id, in the layout that is meant for inner numbers. A plain layout
/// means itself: its null format may name the id, but a format that does would come back here without end.
void AppendClassId(Value const & oValue, ValueString & sOut, ValueConverterLayout const & oLayout)
{
    ValueInt32 const oId(static_cast<int>(oValue.GetClassDesc().GetClassId()));
    ValueConverterLayout const & oIdLayout = oLayout.GetSuitableLayout(oId);
    if (&oIdLayout == &oLayout && !oValue.IsNull())
        XAssertionFailed("&oIdLayout != &oLayout || oValue.IsNull()",
            "ValueConverter : ${clsid} ist nur in einem Collection-Layout erlaubt!");
    oId.GetConverter().ConvertToText(oId, sOut, oIdLayout);
}

} // namespace

ClassDescription const & ValueConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<ValueConverter>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * ValueConverter::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

void ValueConverter::DoCopy(Root const &) {}

void ValueConverter::ConvertToText(
    Value const & oValue, ValueString & sText, ValueConverterLayout const & oLayout) const
{
    sText << oLayout.GetPrefix();

    std::string const & sFormat = (oValue.IsNull() ? oLayout.GetNullFormat() : oLayout.GetFormat()).s_str();
    std::string sDone;
    ValueString sReplacement;
    std::size_t iRest = 0;
    for (;;)
    {
        Replacement const oNext = FindReplacement(sFormat, iRest);
        if (!oNext.IsFound())
            break;
        if (!oNext.IsClosed())
            XAssertionFailed("false",
                String("ValueConverter::ConvertToText : Ungültiger Formatstring! Zeichen '}' nicht gefunden. "
                       "String : \"")
                    + sDone + sFormat.substr(iRest) + '"');

        sDone.append(sFormat, iRest, oNext.iStart - iRest);
        sReplacement.SetNull();
        bool const bTaken = GetReplacement(oValue, oNext.GetIdentifier(sFormat), sReplacement, oLayout);
        if (!sReplacement.IsNull())
            sDone += sReplacement.s_str();

        // An identifier that was refused stays in the text, behind what came with the refusal.
        iRest = bTaken ? oNext.iEnd + 1 : oNext.iEnd;
        if (!bTaken)
            sDone.append(sFormat, oNext.iStart, oNext.iEnd - oNext.iStart);
    }

    sDone.append(sFormat, iRest);
    sText << sDone << oLayout.GetPostfix();
}

void ValueConverter::ConvertToText(Value const & oValue, ValueString & sText) const
{
    ConvertToText(oValue, sText, GetDefaultLayout());
}

Result ValueConverter::ConvertFromText(
    ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout) const
{
    if (sText.IsNull())
        XAssertionFailed("!sText.IsNull()", "");

    if (sText == oLayout.GetNullFormat())
    {
        oValue.SetNull();
        return Result::Null();
    }

    ValueString sRest(sText);
    std::string const & sPrefix = oLayout.GetPrefix().s_str();
    if (!sPrefix.empty() && (sText.GetLength() <= sPrefix.size() || !CutHead(sRest, sPrefix)))
        return MakeResult(ERR::eBadData, "Ungültiges Format. Geforderter Prefix nicht gefunden");

    std::string const & sFormat = oLayout.GetFormat().s_str();
    Replacement oNext = FindReplacement(sFormat, 0);
    while (oNext.IsFound())
    {
        // Always the head of the format, on a later replacement too.
        std::string_view const sHead = std::string_view(sFormat).substr(0, oNext.iStart);
        if (!CutHead(sRest, sHead))
            return MakeResult(ERR::eBadData, String("Fehler bei Konvertierung. An Position ")
                                                 + " des zu konvertierender Strings wurde \""
                                                 + std::string(sHead) + "\" erwartet.");

        if (!oNext.IsClosed())
            return MakeResult(ERR::eBadData, String("Fehler bei Konvertierung. Im Formatstring \"") + sFormat
                                                 + "\" wurde das Zeichen '}' nicht gefunden. ");

        Result oResult = ConvertReplacement(sRest, oValue, oLayout, oNext.GetIdentifier(sFormat));
        if (oResult.IsError())
            return oResult;
        oNext = FindReplacement(sFormat, oNext.iEnd);
    }

    std::string const & sPostfix = oLayout.GetPostfix().s_str();
    if (!sPostfix.empty())
    {
        // The end is looked for in the whole text, while it is the front of the rest that is cut.
        if (sRest.GetLength() < sPostfix.size() + sPrefix.size() || !sText.s_str().ends_with(sPostfix))
            return MakeResult(ERR::eBadData, "Ungültiges Format. Geforderter Postfix nicht gefunden");
        sRest.CutLeft(static_cast<unsigned int>(sPostfix.size()));
    }

    if (!sRest.IsEmpty())
        return MakeResult(
            ERR::eBadData, "Ungültiges Format. Es wurden nicht alle Zeichen des Eingangsstring konvertiert.");
    return Result::Null();
}

Result ValueConverter::ConvertFromText(ValueString const & sText, Value & oValue) const
{
    return ConvertFromText(sText, oValue, GetDefaultLayout());
}

bool ValueConverter::GetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
    ValueConverterLayout const & oLayout) const
{
    std::string_view const sName = sIdentifier.s_str();
    if (sName == ID_CLASS_NAME)
        sOut << oValue.GetClassDesc().GetClassName();
    else if (sName == ID_CLASS_ID)
        AppendClassId(oValue, sOut, oLayout);
    else if (sName == ID_NULL)
        sOut << (oValue.IsNull() ? "true" : "false");
    else
        return DoGetReplacement(oValue, sIdentifier, sOut, oLayout);
    return true;
}

Result ValueConverter::ConvertReplacement(ValueString & sText, Value & oValue,
    ValueConverterLayout const & oLayout, ValueString const & sIdentifier) const
{
    std::string_view const sName = sIdentifier.s_str();
    if (sName == ID_CLASS_NAME)
    {
        if (!CutHead(sText, oValue.GetClassDesc().GetClassName()))
            return MakeResult(ERR::eBadData, "clsname not found");
    }
    else if (sName == ID_CLASS_ID)
    {
        ValueString sClassId;
        AppendClassId(oValue, sClassId, oLayout);
        if (!CutHead(sText, sClassId.s_str()))
            return MakeResult(ERR::eBadData, "clsid not found");
    }
    else if (sName == ID_NULL)
    {
        if (!CutNullWord(sText))
            return MakeResult(ERR::eBadData, "null not found");
    }

    // The value class is asked behind a standard identifier as well.
    return DoConvertReplacement(sText, oValue, oLayout, sIdentifier);
}

} // namespace tsl
