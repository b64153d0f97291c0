#include <tessel/ValueConverter.h>

#include "LayoutFormat.h"
#include "PlainNumber.h"

#include <tessel/Assertion.h>
#include <tessel/ValueInt32.h>

#include <memory>
#include <string_view>

namespace tsl
{

namespace
{

constexpr std::string_view ID_CLASS_NAME = "clsname";
constexpr std::string_view ID_CLASS_ID = "clsid";
constexpr std::string_view ID_NULL = "null";

bool BeginsWith(ValueString const & sText, std::string_view sHead)
{
    return std::string_view(sText.s_str()).substr(0, sHead.size()) == sHead;
}

/// Removes the head of the text; false if the text begins otherwise.
bool CutHead(ValueString & sText, std::string_view sHead)
{
    if (sHead.empty())
        return true;
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

    // The byte after the word is removed as well.
    sText.CutLeft(6);
    return true;
}

/// Whether the text is that of null. A null format that is null itself is an assertion failure.
bool IsNullText(ValueString const & sText, ValueString const & sNullFormat)
{
    // Most texts differ in length.
    bool const bMayBe = sNullFormat.IsNull() || sNullFormat.GetLength() == sText.GetLength();
    return bMayBe && sText == sNullFormat;
}

// Failures are made out of line, to keep their callers small (R08).

[[gnu::noinline, gnu::cold]] Result MakeBadData(char const * sText, int iLine = __builtin_LINE())
{
    return MakeResult(ERR::eBadData, sText, __builtin_FILE(), iLine);
}

[[gnu::noinline, gnu::cold]] Result MakeHeadFailure(std::string_view sHead)
{
    return MakeResult(ERR::eBadData, String("Fehler bei Konvertierung. An Position ")
                                         + " des zu konvertierender Strings wurde \"" + std::string(sHead)
                                         + "\" erwartet.");
}

[[gnu::noinline, gnu::cold]] Result MakeFormatFailure(std::string const & sFormat)
{
    return MakeResult(ERR::eBadData, String("Fehler bei Konvertierung. Im Formatstring \"") + sFormat
                                         + "\" wurde das Zeichen '}' nicht gefunden. ");
}

/// Appends the text of a value's class id, in the layout for inner numbers. A plain layout returns itself for
/// them: its null format may contain the id, but a format that does would recurse without end.
void AppendClassId(Value const & oValue, ValueString & sOut, ValueConverterLayout const & oLayout)
{
    ValueInt32 const oId(static_cast<int>(oValue.GetClassDesc().GetClassId()));
    ValueConverterLayout const & oIdLayout = oLayout.GetSuitableLayout(oId);
    if (&oIdLayout == &oLayout && !oValue.IsNull())
        XAssertionFailed("&oIdLayout != &oLayout || oValue.IsNull()",
            "ValueConverter : ${clsid} ist nur in einem Collection-Layout erlaubt!");
    oId.GetConverter().ConvertToText(oId, sOut, oIdLayout);
}

bool IsStandard(std::string_view sIdentifier)
{
    return sIdentifier == ID_CLASS_NAME || sIdentifier == ID_CLASS_ID || sIdentifier == ID_NULL;
}

/// Removes the text of a standard identifier.
Result CutStandard(ValueString & sText, Value const & oValue, ValueConverterLayout const & oLayout,
    std::string_view sIdentifier)
{
    if (sIdentifier == ID_CLASS_NAME)
        return CutHead(sText, oValue.GetClassDesc().GetClassName()) ? Result()
                                                                    : MakeBadData("clsname not found");
    if (sIdentifier == ID_NULL)
        return CutNullWord(sText) ? Result() : MakeBadData("null not found");

    ValueString sClassId;
    AppendClassId(oValue, sClassId, oLayout);
    return CutHead(sText, sClassId.s_str()) ? Result() : MakeBadData("clsid not found");
}

} // namespace

template<>
constexpr ClassSource CLASS_SOURCE<ValueConverter>{};
template<>
ClassDescription const & Described<ValueConverter, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueConverter::DoCopy(Root const &) {}

void ValueConverter::ConvertToText(
    Value const & oValue, ValueString & sText, ValueConverterLayout const & oLayout) const
{
    if (&oValue == &sText) [[unlikely]]
    {
        // The text would change while it is read.
        std::unique_ptr<Value> const pSource(static_cast<Value *>(oValue.GetCopy()));
        ConvertToText(*pSource, sText, oLayout);
        return;
    }

    if (PlainNumber::IsPlanned(oLayout) && PlainNumber::Write(*this, oValue, sText, oLayout))
        return;

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
        bool const bTaken =
            GetReplacement(oValue, ValueString(oNext.GetIdentifier(sFormat)), sReplacement, oLayout);
        if (!sReplacement.IsNull())
            sDone += sReplacement.s_str();

        // A refused identifier stays in the text, after the replacement that came with the refusal.
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

struct TSL_HIDDEN ValueConverter::Private
{
    static Result ConvertReplacements(ValueConverter const & oConverter, ValueString & sText, Value & oValue,
        ValueConverterLayout const & oLayout)
    {
        std::string const & sFormat = oLayout.GetFormat().s_str();
        Replacement oNext = FindReplacement(sFormat, 0);
        while (oNext.IsFound())
        {
            // Always the head of the format, on a later replacement too.
            std::string_view const sHead = std::string_view(sFormat).substr(0, oNext.iStart);
            if (!CutHead(sText, sHead))
                return MakeHeadFailure(sHead);
            if (!oNext.IsClosed())
                return MakeFormatFailure(sFormat);

            Result oResult = oConverter.ConvertReplacement(
                sText, oValue, oLayout, ValueString(oNext.GetIdentifier(sFormat)));
            if (oResult.IsError())
                return oResult;
            oNext = FindReplacement(sFormat, oNext.iEnd);
        }
        return Result();
    }
};

Result ValueConverter::ConvertFromText(
    ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout) const
{
    if (sText.IsNull())
        XAssertionFailed("!sText.IsNull()", "");

    if (IsNullText(sText, oLayout.GetNullFormat()))
    {
        oValue.SetNull();
        return Result();
    }

    if (PlainNumber::IsPlanned(oLayout) && PlainNumber::Read(*this, sText.s_str(), oValue, oLayout))
        return Result();

    ValueString sRest(sText);
    std::string const & sPrefix = oLayout.GetPrefix().s_str();
    if (!sPrefix.empty() && (sText.GetLength() <= sPrefix.size() || !CutHead(sRest, sPrefix)))
        return MakeBadData("Ungültiges Format. Geforderter Prefix nicht gefunden");

    Result oResult = Private::ConvertReplacements(*this, sRest, oValue, oLayout);
    if (oResult.IsError())
        return oResult;

    std::string const & sPostfix = oLayout.GetPostfix().s_str();
    if (!sPostfix.empty())
    {
        // The postfix is compared with the end of the whole text, but removed from the front of the rest.
        if (sRest.GetLength() < sPostfix.size() + sPrefix.size() || !sText.s_str().ends_with(sPostfix))
            return MakeBadData("Ungültiges Format. Geforderter Postfix nicht gefunden");
        sRest.CutLeft(static_cast<unsigned int>(sPostfix.size()));
    }

    if (!sRest.IsEmpty())
        return MakeBadData("Ungültiges Format. Es wurden nicht alle Zeichen des Eingangsstring konvertiert.");
    return Result();
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
    if (IsStandard(sIdentifier.s_str())) [[unlikely]]
    {
        Result oResult = CutStandard(sText, oValue, oLayout, sIdentifier.s_str());
        if (oResult.IsError())
            return oResult;
    }

    // The value class is called after a standard identifier as well.
    return DoConvertReplacement(sText, oValue, oLayout, sIdentifier);
}

} // namespace tsl
