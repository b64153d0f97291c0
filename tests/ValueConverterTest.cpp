#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// A layout that takes every format but one.
class TextLayout : public ValueConverterLayout
{
public:
    TextLayout() = default;
    explicit TextLayout(ValueString const & sFormat, ValueString const & sNullFormat = "NULL")
        : ValueConverterLayout(sFormat, sNullFormat)
    {
    }

    bool VerifyFormat(ValueString const & sFormat, ValueString const & sNullFormat) const override
    {
        return sFormat != "bad" && sNullFormat != "bad";
    }
};

using ListLayout = ValueAbstractValueCollectionConverterLayout;

/// A converter whose identifiers stand for what an engine has to be careful with.
class TrickyConverter : public ValueConverter
{
public:
    ValueConverterLayout const & GetDefaultLayout() const override
    {
        return ValueInt32().GetConverter().GetDefaultLayout();
    }

protected:
    bool DoGetReplacement(Value const &, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const &) const override
    {
        EXPECT_TRUE(sOut.IsNull());
        if (sIdentifier == "format" || sIdentifier == "both")
            sOut << "${x}";
        else if (sIdentifier == "dollar")
            sOut << "$";
        return sIdentifier == "format" || sIdentifier == "dollar" || sIdentifier == "nothing";
    }

    Result DoConvertReplacement(ValueString & sText, Value & oValue, ValueConverterLayout const &,
        ValueString const & sIdentifier) const override
    {
        if (sIdentifier == "null" || sIdentifier == "clsname" || sIdentifier == "clsid")
            return Result(2, "asked with " + sText, Result::eCategoryDefault);
        static_cast<ValueInt32 &>(oValue) = sText.IsEmpty() ? -1 : sText[0];
        sText.CutLeft(1);
        return Result();
    }
};

Result Read(ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout)
{
    return oValue.GetConverter().ConvertFromText(sText, oValue, oLayout);
}

TEST(ConverterWriting, FollowsTheFormat)
{
    std::pair<char const *, std::string> const aRows[] = {
        {"a${format}b", "a${x}b"},
        {"${dollar}{format}", "${format}"},
        {"a${unknown}b${nothing}c", "a${unknown}bc"},
        {"${${format}}", "${${format}}"},
        {"${clsname} ${null}", "class tsl::ValueInt32 false"},
    };
    for (auto const & [sFormat, sExpected] : aRows)
    {
        ValueString sText("<");
        TrickyConverter().ConvertToText(ValueInt32(5), sText, TextLayout(sFormat));
        EXPECT_EQ(sText.s_str(), "<" + sExpected) << sFormat;
    }
}

TEST(ConverterWriting, UsesTheNullFormatAndTheTextsAround)
{
    ValueIntegerConverterLayout oLayout;
    oLayout.SetPrefix("(");
    oLayout.SetPostfix(")");
    EXPECT_EQ(GetText(ValueInt32(5), oLayout), "(5)");
    EXPECT_EQ(GetText(ValueInt32(), oLayout), "(NULL)");
    EXPECT_EQ(GetText(ValueNull(), TextLayout("x", "${null}${%d}")), "true${%d}");

    // A text that is written into itself.
    ValueString sSelf("ab");
    ValueStringConverterLayout oAround;
    oAround.SetPrefix("(");
    sSelf.GetConverter().ConvertToText(sSelf, sSelf, oAround);
    EXPECT_EQ(sSelf, "ab(ab");
}

TEST(ConverterWriting, RefusesFormatsThatItCannotWalk)
{
    std::string const sInfo =
        "ValueConverter::ConvertToText : Ungültiger Formatstring! Zeichen '}' nicht gefunden. String : ";
    EXPECT_TRUE(Asserts("false", sInfo + "\"5 ${\"", [] { GetText(ValueInt32(5), TextLayout("${%d} ${")); }));
    EXPECT_TRUE(Asserts(
        "!m_bNull", "Invalid operation. ValueString is NULL", [] { GetText(ValueInt32(5), TextLayout()); }));
    ValueString sText;
    EXPECT_TRUE(Asserts("pValue", "ValueConverter : Value hat eine andere Klasse!",
        [&] { ValueInt32().GetConverter().ConvertToText(ValueString("x"), sText); }));
}

TEST(ConverterIdentifiers, AreFormatsOfPrintf)
{
    Rows<char const *, int, char const *> aRows = {
        {"${%+06.3d}|", 42, "  +042|"},
        {"a${%c}b", 0, "ab"},
        {"${100%% of %d items}", 3, "100% of 3 items"},
        {"${%hlx}", 65537, "10001"},
    };
    for (auto const & [sFormat, iNumber, sText] : aRows)
        EXPECT_EQ(GetText(ValueInt32(iNumber), TextLayout(sFormat)), sText) << sFormat;

    EXPECT_EQ(GetText(ValueString("abc"), ValueStringConverterLayout("${%-5.2s}|")), "ab   |");
    EXPECT_EQ(GetText(ValueInt32(1), TextLayout("${%3998d}")).size(), 3998u);
}

TEST(ConverterIdentifiers, AreRefusedWherePrintfCannotBeTrusted)
{
    ValueInt32 const iNumber(5);
    auto const fRefuses = [](Value const & oValue, std::string const & sIdentifier)
    {
        return Asserts("false", "ValueConverter : Ungültiger Formatstring! String : \"" + sIdentifier + '"',
            [&] { GetText(oValue, TextLayout("${" + sIdentifier + "}")); });
    };
    for (char const * const sIdentifier : {"%", "a %", "%5", "%l", "%n", "%hn", "%s", "%p", "%f", "%d %d",
             "%*d", "%.*d", "%.-1d", "%1$d", "%'d", "%zd", "%Ld", "%3999d", "%.3999d", "%4294967297d"})
        EXPECT_TRUE(fRefuses(iNumber, sIdentifier)) << sIdentifier;
    for (char const * const sIdentifier : {"%d", "%c", "%s%s", "%m", "%n", "%3999s"})
        EXPECT_TRUE(fRefuses(ValueString("text"), sIdentifier)) << sIdentifier;
    EXPECT_TRUE(Asserts("!m_bNull", "Invalid operation. ValueString is NULL",
        [] { GetText(ValueString(), TextLayout("", "${%s}")); }));
}

TEST(ConverterIdentifiers, NeedACollectionLayoutForTheClassId)
{
    ValueInt32 const iNumber(5);
    std::string const sId = std::to_string(ValueInt32::GetStaticClassDesc().GetClassId());

    ListLayout oLayout("<${clsid}>");
    oLayout.AddLayout(new ValueIntegerConverterLayout("id ${%d}"));
    EXPECT_EQ(GetText(iNumber, oLayout), "<id " + sId + ">");

    // A null format may name the id, since the id itself is written by the format.
    EXPECT_EQ(GetText(ValueInt32(), TextLayout("${%d}", "null of ${clsid}")), "null of " + sId);

    std::string const sExpression = "&oIdLayout != &oLayout || oValue.IsNull()";
    std::string const sInfo = "ValueConverter : ${clsid} ist nur in einem Collection-Layout erlaubt!";
    ValueInt32 iRead;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${clsid}"));
    TextLayout const oPlain("${clsid}", "${clsid}");
    EXPECT_TRUE(AllAssert(
        sExpression, sInfo, {[&] { GetText(ValueInt32(), oPlain); }, [&] { Read("<1>", iRead, oLayout); }}));
}

TEST(ConverterReading, FollowsTheFormatFromItsHead)
{
    std::string const sId = std::to_string(ValueInt32::GetStaticClassDesc().GetClassId());
    char const * const sNoPostfix = "Ungültiges Format. Geforderter Postfix nicht gefunden";
    char const * const sRest =
        "Ungültiges Format. Es wurden nicht alle Zeichen des Eingangsstring konvertiert.";
    // Prefix, format, postfix, text, what is read (-2 for nothing, for text bytes have other numbers),
    // failure.
    Rows<std::string, std::string, std::string, std::string, int, std::string> aRows = {
        {"", "${x}", "", "AB", 'A', sRest},
        {"", "n=${x}", "", "n=A", 'A', ""},
        {"", "n=${x}", "", "n", -2,
            "Fehler bei Konvertierung. An Position  des zu konvertierender Strings wurde \"n=\" erwartet."},
        {"", "${x}${y}", "", "A${x}B", 'B', ""}, // the head of the format again, not what stands between
        {"(", "${x}", "", "A", -2, "Ungültiges Format. Geforderter Prefix nicht gefunden"},
        {"", "${x}", ")", "A", 'A', sNoPostfix},
        {"(", "${x}", ")", "(A)", 'A', sNoPostfix}, // the prefix counts against the rest once more
        {"", "${${x}", "", "A", 'A', ""},
        {"", "${x", "", "A", -2,
            "Fehler bei Konvertierung. Im Formatstring \"${x\" wurde das Zeichen '}' nicht gefunden. "},
        // The value is asked behind a standard identifier as well.
        {"", "${clsname}", "", "class tsl::ValueInt32!", -2, "asked with !"},
        {"", "${clsname}", "", "class tsl::ValueInt", -2, "clsname not found"},
        {"", "${clsid}", "", sId + "!", -2, "asked with !"},
        {"", "${null}", "", "fals", -2, "null not found"},
    };
    for (auto const & [sPrefix, sFormat, sPostfix, sText, iExpected, sFailure] : aRows)
    {
        SCOPED_TRACE(sPrefix + sFormat + sPostfix + " from " + sText);
        ListLayout oLayout(sFormat);
        oLayout.SetPrefix(sPrefix);
        oLayout.SetPostfix(sPostfix);
        ValueInt32 iNumber(-2);
        Result const oResult = TrickyConverter().ConvertFromText(sText, iNumber, oLayout);
        EXPECT_EQ(iNumber.AsInt32(), iExpected);
        EXPECT_EQ(oResult.IsOk() ? "" : oResult.GetText().s_str(), sFailure);
    }
}

TEST(ConverterReading, TakesTheNullFormatAsAWholeBeforeAllElse)
{
    ValueIntegerConverterLayout oLayout;
    oLayout.SetPrefix("(");
    oLayout.SetPostfix(")");
    ValueInt32 iNumber(5);
    EXPECT_TRUE(Read("(NULL)", iNumber, oLayout).IsError());
    EXPECT_EQ(Read("5", iNumber, TextLayout("${%5d}")).GetText(), "sIdentifier unknown");
    EXPECT_EQ(iNumber, 5);
    EXPECT_TRUE(Read("NULL", iNumber, oLayout).IsOk());
    EXPECT_TRUE(iNumber.IsNull());

    ValueString sText("NULL");
    ValueNull oNull;
    ValueStringConverterLayout const oText;
    EXPECT_TRUE(Read(sText, sText, oText).IsOk());
    EXPECT_TRUE(Asserts("!sText.IsNull()", "", [&] { Read(sText, sText, oText); }));
    EXPECT_TRUE(Asserts("0", "not implemented", [&] { Read("x", sText, oText); }));
    EXPECT_TRUE(Asserts("0", "not implemented", [&] { Read("x", oNull, oText); }));
}

/// Overrides nothing, but follows a format step by step, since it is no class of the library.
template<class Base>
class StepByStep : public Base
{
};

/// The text of a value or the failure of reading it, and the value afterwards.
template<class ValueClass>
std::string GetOutcome(ValueConverter const & oConverter, ValueClass oValue,
    ValueConverterLayout const & oLayout, char const * sSource)
{
    ValueString sText("<");
    try
    {
        if (!sSource)
            oConverter.ConvertToText(oValue, sText, oLayout);
        else if (Result const oResult = oConverter.ConvertFromText(sSource, oValue, oLayout);
                 oResult.IsError())
            sText << oResult.GetErrorCode() << oResult.GetText();
    }
    catch (Exception const & oException)
    {
        sText << oException.GetText();
    }
    sText << '|';
    return oValue.AddAsString(sText).s_str();
}

TEST(ConverterFastPath, ReadsAndWritesAsTheStepsDo)
{
    auto const fCompare =
        [](auto const & oValue, ValueConverter const & oSteps, ValueConverterLayout const & oLayout)
    {
        for (char const * const sText : {static_cast<char const *>(nullptr), "", "5", "-5", "+5", " 5 ",
                 "\t1.5\n", "-2147483648", "-999999999", "2147483648", "00000000001", "NULL", "1.5", "1.5x",
                 ".5e1", "1d2", "1e39", "-", "[5]", "(5"})
            EXPECT_EQ(GetOutcome(oValue.GetConverter(), oValue, oLayout, sText),
                GetOutcome(oSteps, oValue, oLayout, sText))
                << oLayout.GetFormat().s_str() << " and " << (sText ? sText : "writing");
    };
    ValueString const aAround[] = {"", "(", ValueString()};
    for (char const * const sFormat :
        {"${%d}", "[${%d}]", "${%d} end", "${%f}", "a long literal text ${%.2f}!", "${%.0f}", "${%.99f}",
            "${%.100f}", "${%5d}", "${%d}${%f}", "${%e of}", "${%d", "${}", "", "5", "${null}"})
        for (ValueString const & sPrefix : aAround)
            for (ValueString const & sPostfix : aAround)
            {
                TextLayout oLayout(sFormat);
                oLayout.SetPrefix(sPrefix);
                oLayout.SetPostfix(sPostfix);
                for (ValueInt32 const & iNumber : {ValueInt32(), ValueInt32(INT_MIN), ValueInt32(7)})
                    fCompare(iNumber, StepByStep<ValueIntegerConverter>(), oLayout);
                for (ValueFloat32 const & fNumber :
                    {ValueFloat32(), ValueFloat32(-0.125f), ValueFloat32(1e30f)})
                    fCompare(fNumber, StepByStep<ValueFloatConverter>(), oLayout);
            }
}

/// A converter and a value whose steps a program has overridden.
class StarConverter : public ValueIntegerConverter
{
    bool DoGetReplacement(Value const &, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const &) const override
    {
        EXPECT_TRUE(sOut.IsNull());
        sOut << sIdentifier << '*';
        return true;
    }
    Result DoConvertReplacement(
        ValueString & sText, Value &, ValueConverterLayout const &, ValueString const &) const override
    {
        return Result(2, "asked with " + sText, Result::eCategoryDefault);
    }
};

class AlwaysNull : public ValueInt32
{
public:
    AlwaysNull() : ValueInt32(5) {}
    bool IsNull() const override { return true; }
};

TEST(ConverterFastPath, IsNotTakenWhereAStepIsOverriddenOrTheFormatChanges)
{
    ValueIntegerConverterLayout oLayout("[${%d}]");
    ValueInt32 iNumber(5);
    ValueString sText;
    StarConverter().ConvertToText(iNumber, sText, oLayout);
    EXPECT_EQ(sText, "[%d*]");
    EXPECT_EQ(StarConverter().ConvertFromText("7", iNumber).GetText(), "asked with 7");
    EXPECT_EQ(GetText(AlwaysNull(), oLayout), "NULL");

    EXPECT_EQ(GetText(iNumber, oLayout), "[5]");
    ASSERT_TRUE(oLayout.SetFormat("${%03d}."));
    EXPECT_EQ(GetText(iNumber, oLayout), "005.");
    oLayout.Set(ValueIntegerConverterLayout("n=${%d}"));
    EXPECT_EQ(GetText(iNumber, oLayout), "n=5");
    ASSERT_TRUE(oLayout.SetFormat(ValueString()));
    EXPECT_TRUE(
        Asserts("!m_bNull", "Invalid operation. ValueString is NULL", [&] { GetText(iNumber, oLayout); }));
}

TEST(ResultText, ShowsNumberTextAndPlace)
{
    Result oResult(5, "x", Result(1, "hidden", Result::eCategoryDefault));
    oResult.SetSource("f", 3);
    oResult.SetCause("hidden");
    EXPECT_EQ(GetText(oResult), "Number=5,Text=x,File=f,Line=3");
    EXPECT_EQ(
        GetText(oResult, ResultConverterLayout("${No}/${Cause}/${text}${clsname}")), "5//class tsl::Result");
    EXPECT_EQ(GetText(Result(), ResultConverterLayout()), "NULL");
    EXPECT_EQ(oResult.GetConverter().ConvertFromText("Number=5", oResult).GetText(), "Not implemented");
}

TEST(Layouts, TakeTheirTextsTogetherOrNotAtAll)
{
    TextLayout oLayout("a", "b");
    EXPECT_FALSE(oLayout.SetFormat("bad"));
    EXPECT_FALSE(oLayout.SetFormat("c", "bad"));
    EXPECT_TRUE(oLayout.SetFormat(oLayout.GetNullFormat(), oLayout.GetFormat()));
    EXPECT_EQ(oLayout.GetFormat() + "/" + oLayout.GetNullFormat(), "b/a");
}

TEST(LayoutCollections, OwnOneLayoutPerClass)
{
    auto pLayout = std::make_unique<ListLayout>("");
    EXPECT_EQ(&pLayout->GetSuitableLayout(ValueInt32()), &ValueInt32().GetConverter().GetDefaultLayout());
    auto * const pNumber = new ValueIntegerConverterLayout("<2");
    pLayout->AddLayout(new ValueIntegerConverterLayout("1"));
    pLayout->AddLayout(pNumber);
    pLayout->AddLayout(pNumber);
    EXPECT_TRUE(Asserts("pLayout", "ValueConverterLayoutCollection::AddLayout : Pointer ist NULL!",
        [&] { pLayout->AddLayout(nullptr); }));
    pLayout->SetCollPrePostfix(pLayout->GetCollPostfix(), pLayout->GetCollPrefix());
    pLayout->SetSeparator("/");

    ListLayout oTarget("kept");
    oTarget.AddLayout(new ValueNullConverterLayout);
    ValueConverterLayout const * const pKept = &oTarget.GetSuitableLayout(ValueNull());
    oTarget.Set(ListLayout(*pLayout));
    pLayout.reset();
    EXPECT_EQ(&oTarget.GetSuitableLayout(ValueNull()), pKept);
    EXPECT_EQ(oTarget.GetFormat(), "");
    EXPECT_EQ(oTarget.GetCollPrefix() + oTarget.GetSeparator() + oTarget.GetCollPostfix(), ")/(");
    EXPECT_EQ(GetText(ValueInt32(5), oTarget.GetSuitableLayout(ValueInt32())), "<2");
}

} // namespace
