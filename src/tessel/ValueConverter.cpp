#include <tessel/ValueConverter.h>

#include <tessel/Assertion.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>

#include <memory>
#include <string_view>

namespace tsl
{

namespace
{

constexpr std::size_t OPENING_LENGTH = 2; // of "${"
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
        return iEnd != std::string::npos && iEnd >= iStart + OPENING_LENGTH + IDENTIFIER_LENGTH_MIN;
    }

    ValueString GetIdentifier(std::string_view sFormat) const
    {
        std::size_t const iIdentifier = iStart + OPENING_LENGTH;
        return ValueString(sFormat.substr(iIdentifier, iEnd - iIdentifier));
    }
};

Replacement FindReplacement(std::string_view sFormat, std::size_t iFrom)
{
    // By plain loops: a format is so short that they are done before a search of the runtime's has begun.
    Replacement oFound;
    std::size_t i = iFrom;
    while (i + 1 < sFormat.size() && !(sFormat[i] == '$' && sFormat[i + 1] == '{'))
        ++i;
    if (i + 1 >= sFormat.size())
        return oFound;

    oFound.iStart = i;
    while (i < sFormat.size() && sFormat[i] != '}')
        ++i;
    if (i < sFormat.size())
        oFound.iEnd = i;
    return oFound;
}

bool BeginsWith(ValueString const & sText, std::string_view sHead)
{
    return std::string_view(sText.s_str()).substr(0, sHead.size()) == sHead;
}

/// Cuts the head off the text; false if the text begins otherwise.
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

    // One byte more than the word goes with it.
    sText.CutLeft(6);
    return true;
}

/// Whether the text is that of null. A null format that is null itself is an assertion failure.
bool IsNullText(ValueString const & sText, ValueString const & sNullFormat)
{
    // Their lengths tell most texts apart.
    bool const bMayBe = sNullFormat.IsNull() || sNullFormat.GetLength() == sText.GetLength();
    return bMayBe && sText == sNullFormat;
}

// The failures are made apart from the conversion, which would otherwise make room for their texts each time.

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

bool IsStandard(std::string_view sIdentifier)
{
    return sIdentifier == ID_CLASS_NAME || sIdentifier == ID_CLASS_ID || sIdentifier == ID_NULL;
}

/// Cuts off what a standard identifier stands for.
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
template ClassDescription const &
Described<ValueConverter, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

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

            Result oResult =
                oConverter.ConvertReplacement(sText, oValue, oLayout, oNext.GetIdentifier(sFormat));
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
        // The end is looked for in the whole text, while it is the front of the rest that is cut.
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

    // The value class is asked behind a standard identifier as well.
    return DoConvertReplacement(sText, oValue, oLayout, sIdentifier);
}

} // namespace tsl
