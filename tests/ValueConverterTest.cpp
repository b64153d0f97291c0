#include "AssertionTest.h"

#include <tessel/ResultConverter.h>
#include <tessel/ValueConverterLayoutCollection.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>
#include <tessel/ValueNull.h>
#include <tessel/ValueNullConverter.h>
#include <tessel/ValueStringConverter.h>

#include <functional>
#include <memory>

using tsl::Result;
using tsl::String;
using tsl::Value;
using tsl::ValueConverterLayout;
using tsl::ValueInt32;
using tsl::ValueIntegerConverterLayout;
using tsl::ValueNull;
using tsl::ValueString;
using tsltest::Asserts;

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
    using ValueConverterLayout::DemandFormat;

    bool VerifyFormat(ValueString const & sFormat, ValueString const & sNullFormat) const override
    {
        return sFormat != "bad" && sNullFormat != "bad";
    }
};

/// A layout of inner values.
class ListLayout : public tsl::ValueConverterLayoutCollection
{
public:
    explicit ListLayout(ValueString const & sFormat) : ValueConverterLayoutCollection(sFormat) {}

    static tsl::ClassDescription const & GetStaticClassDesc()
    {
        static tsl::ClassDescription const & oDescription =
            tsl::DescribeClass<ListLayout>(&ValueConverterLayoutCollection::GetStaticClassDesc(),
                tsl::ClassDescription::eConcrete, &CreateNew);
        return oDescription;
    }
    tsl::ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    static tsl::Root * CreateNew() { return new ListLayout(""); }
};

/// A converter whose identifiers stand for what an engine has to be careful with.
class TrickyConverter : public tsl::ValueConverter
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
        if (sIdentifier == "format")
            sOut << "${x}";
        else if (sIdentifier == "dollar")
            sOut << "$";
        else if (sIdentifier == "both")
            sOut << "text";
        return sIdentifier == "format" || sIdentifier == "dollar" || sIdentifier == "nothing";
    }

    /// Reads one byte.
    Result DoConvertReplacement(ValueString & sText, Value & oValue, ValueConverterLayout const &,
        ValueString const & sIdentifier) const override
    {
        if (sIdentifier == "null" || sIdentifier == "clsname" || sIdentifier == "clsid")
            return Result(77, sText, Result::eCategoryDefault);
        static_cast<ValueInt32 &>(oValue) = sText.IsEmpty() ? -1 : sText[0];
        sText.CutLeft(1);
        return Result();
    }
};

std::string Write(Value const & oValue, ValueConverterLayout const & oLayout)
{
    ValueString sText;
    oValue.GetConverter().ConvertToText(oValue, sText, oLayout);
    return sText.s_str();
}

Result Read(ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout)
{
    return oValue.GetConverter().ConvertFromText(sText, oValue, oLayout);
}

TEST(ConverterWriting, FollowsTheFormat)
{
    TrickyConverter const oConverter;
    struct Row
    {
        char const * sFormat;
        char const * sText;
    };
    Row const aRows[] = {
        {"a}b{c$d", "a}b{c$d"},
        {"a${format}b", "a${x}b"},
        {"${format}${format}", "${x}${x}"},
        {"${dollar}{format}", "${format}"},
        {"a${nothing}b", "ab"},
        {"a${unknown}b${nothing}c", "a${unknown}bc"},
        {"${both}", "text${both}"},
        {"${${format}}", "${${format}}"},
        {"${clsname} ${null}", "class tsl::ValueInt32 false"},
    };
    for (Row const & oRow : aRows)
    {
        ValueString sText("<");
        oConverter.ConvertToText(ValueInt32(5), sText, TextLayout(oRow.sFormat));
        EXPECT_EQ(sText.s_str(), std::string("<") + oRow.sText) << oRow.sFormat;
    }
}

TEST(ConverterWriting, UsesTheNullFormatAndTheTextsAround)
{
    ValueIntegerConverterLayout oLayout;
    oLayout.SetPrefix("(");
    oLayout.SetPostfix(")");
    EXPECT_EQ(Write(ValueInt32(5), oLayout), "(5)");
    EXPECT_EQ(Write(ValueInt32(), oLayout), "(NULL)");
    EXPECT_EQ(Write(ValueInt32(), TextLayout("${null}", "${null}")), "true");
    EXPECT_EQ(Write(ValueInt32(), TextLayout("", "${%d}")), "0");
    EXPECT_EQ(Write(ValueNull(), TextLayout("x", "${%d}")), "${%d}");

    ValueString sText;
    EXPECT_EQ(ValueNull().AddAsString(sText), "NULL");
    ValueString sSelf("ab");
    EXPECT_EQ(sSelf.AddAsString(sSelf), "abab");
}

TEST(ConverterWriting, RefusesFormatsThatItCannotWalk)
{
    struct Row
    {
        char const * sFormat;
        char const * sDone;
    };
    for (Row const & oRow : {Row{"a${%d", "a${%d"}, Row{"${}", "${}"}, Row{"${%d} ${", "5 ${"}})
    {
        std::string const sInfo = "ValueConverter::ConvertToText : Ungültiger Formatstring! Zeichen '}' "
                                  "nicht gefunden. String : \"";
        EXPECT_TRUE(Asserts(
            "false", sInfo + oRow.sDone + '"', [&] { Write(ValueInt32(5), TextLayout(oRow.sFormat)); }))
            << oRow.sFormat;
    }
    EXPECT_TRUE(Asserts(
        "!m_bNull", "Invalid operation. ValueString is NULL", [] { Write(ValueInt32(5), TextLayout()); }));
    EXPECT_TRUE(Asserts("pValue", "ValueConverter : Value hat eine andere Klasse!",
        []
        { ValueInt32().GetConverter().ConvertToText(ValueString("x"), *std::make_unique<ValueString>()); }));
}

TEST(ConverterIdentifiers, AreFormatsOfPrintf)
{
    struct Row
    {
        char const * sFormat;
        int iNumber;
        char const * sText;
    };
    Row const aRows[] = {
        {"${%5d}|", 42, "   42|"},
        {"${%+06.3d}", 42, "  +042"},
        {"${%u}", -1, "4294967295"},
        {"${%#x}", 255, "0xff"},
        {"${%o}", 8, "10"},
        {"${%c}", 'A', "A"},
        {"a${%c}b", 0, "ab"},
        {"${%.0d}", 0, ""},
        {"${100%% of %d items}", 3, "100% of 3 items"},
        {"${%hhd}", 300, "300"},
        {"${%hlx}", 65537, "10001"},
    };
    for (Row const & oRow : aRows)
        EXPECT_EQ(Write(ValueInt32(oRow.iNumber), TextLayout(oRow.sFormat)), oRow.sText) << oRow.sFormat;

    EXPECT_EQ(Write(ValueString("ab%n"), TextLayout("${%s}")), "ab%n");
    EXPECT_EQ(Write(ValueString("abc"), TextLayout("${%-5.2s}|")), "ab   |");
    EXPECT_EQ(Write(ValueString("abc"), TextLayout("${%ls}")), "abc");
    EXPECT_EQ(Write(ValueInt32(1), TextLayout("${%3998d}")).size(), 3998u);
    EXPECT_EQ(Write(ValueString(std::string(3998, 'x')), TextLayout("${%s}")).size(), 3998u);
}

TEST(ConverterIdentifiers, AreRefusedWherePrintfCannotBeTrusted)
{
    ValueInt32 const iNumber(5);
    auto const fRefuses = [](Value const & oValue, std::string const & sIdentifier)
    {
        return Asserts("false", "ValueConverter : Ungültiger Formatstring! String : \"" + sIdentifier + '"',
            [&] { Write(oValue, TextLayout("${" + sIdentifier + "}")); });
    };
    for (char const * const sIdentifier :
        {"%", "a %", "%5", "%l", "%.", "%n", "%hn", "%s", "%p", "%f", "%C", "%5%", "%d %d", "%d %", "%*d",
            "%.*d", "%.-1d", "%1$d", "%'d", "%zd", "%jd", "%Ld", "%3999d", "%.3999d", "%4294967297d"})
        EXPECT_TRUE(fRefuses(iNumber, sIdentifier)) << sIdentifier;
    for (char const * const sIdentifier : {"%d", "%c", "%S", "%s%s", "%m", "%n", "%3999s"})
        EXPECT_TRUE(fRefuses(ValueString("text"), sIdentifier)) << sIdentifier;

    EXPECT_TRUE(Asserts("i >= 0", "Buffer overflow. Formatting argList with string as \"x%3998d\" failed.",
        [&] { Write(iNumber, TextLayout("${x%3998d}")); }));
    EXPECT_TRUE(Asserts("i >= 0", "Buffer overflow. Formatting argList with string as \"%s\" failed.",
        [&] { Write(ValueString(std::string(3999, 'x')), TextLayout("${%s}")); }));
    EXPECT_TRUE(Asserts("!m_bNull", "Invalid operation. ValueString is NULL",
        [] { Write(ValueString(), TextLayout("", "${%s}")); }));
}

TEST(ConverterIdentifiers, NeedACollectionLayoutForTheClassId)
{
    ValueInt32 const iNumber(5);
    std::string const sId = std::to_string(ValueInt32::GetStaticClassDesc().GetClassId());
    EXPECT_EQ(Write(iNumber, ListLayout("<${clsid}>")), "<" + sId + ">");

    ListLayout oLayout("<${clsid}>");
    oLayout.AddLayout(new ValueIntegerConverterLayout("id ${%d}"));
    EXPECT_EQ(Write(iNumber, oLayout), "<id " + sId + ">");

    // A null format may name the id, since the id itself is written by the format.
    EXPECT_EQ(Write(ValueInt32(), TextLayout("${%d}", "null of ${clsid}")), "null of " + sId);

    std::string const sExpression = "&oIdLayout != &oLayout || oValue.IsNull()";
    std::string const sInfo = "ValueConverter : ${clsid} ist nur in einem Collection-Layout erlaubt!";
    ValueInt32 iRead;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${clsid}"));
    TextLayout const oPlain("${clsid}", "${clsid}");
    std::function<void()> const aCalls[] = {
        [&] { Write(iNumber, oPlain); },
        [&] { Write(ValueInt32(), oPlain); },
        [&] { Write(iNumber, oLayout); },
        [&] { Read("1", iRead, oPlain); },
        [&] { Read("<1>", iRead, oLayout); },
    };
    for (auto const & fCall : aCalls)
        EXPECT_TRUE(Asserts(sExpression, sInfo, fCall));
}

TEST(ConverterReading, FollowsTheFormatFromItsHead)
{
    char const * const sPrefix = "Ungültiges Format. Geforderter Prefix nicht gefunden";
    char const * const sPostfix = "Ungültiges Format. Geforderter Postfix nicht gefunden";
    char const * const sHead =
        "Fehler bei Konvertierung. An Position  des zu konvertierender Strings wurde \"n=\" erwartet.";
    char const * const sOpen =
        "Fehler bei Konvertierung. Im Formatstring \"${x\" wurde das Zeichen '}' nicht gefunden. ";
    char const * const sRest =
        "Ungültiges Format. Es wurden nicht alle Zeichen des Eingangsstring konvertiert.";
    struct Row
    {
        char const * sPrefix;
        char const * sFormat;
        char const * sPostfix;
        char const * sText;
        int iNumber; ///< -2 if nothing was read, for text bytes have other numbers
        char const * sFailure = nullptr;
    };
    Row const aRows[] = {
        {"", "${x}", "", "A", 'A'},
        {"", "${x}", "", "AB", 'A', sRest},
        {"", "n=${x}", "", "n=A", 'A'},
        {"", "n=${x}", "", "m=A", -2, sHead},
        {"", "n=${x}", "", "n", -2, sHead},
        {"", "${x}${y}", "", "A${x}B", 'B'}, // the head of the format again, not what stands between
        {"", "${x} end", "", "A end", 'A', sRest},
        {"", "literal", "", "", -2},
        {"(", "${x}", "", "(A", 'A'},
        {"(", "${x}", "", "(", -2, sPrefix},
        {"(", "${x}", "", "A", -2, sPrefix},
        {"", "${x}", ")", "A)", 'A'},
        {"", "${x}", ")", "A", 'A', sPostfix},
        {"(", "${x}", ")", "(A)", 'A', sPostfix}, // the prefix counts against the rest once more
        {"(", "${x}", ")", "(A?)", 'A', sRest},
        {"", "${${x}", "", "A", 'A'},
        {"", "${x", "", "A", -2, sOpen},
    };
    TrickyConverter const oConverter;
    for (Row const & oRow : aRows)
    {
        SCOPED_TRACE(std::string(oRow.sPrefix) + oRow.sFormat + oRow.sPostfix + " from " + oRow.sText);
        TextLayout oLayout(oRow.sFormat);
        oLayout.SetPrefix(oRow.sPrefix);
        oLayout.SetPostfix(oRow.sPostfix);
        ValueInt32 iNumber(-2);
        Result const oResult = oConverter.ConvertFromText(oRow.sText, iNumber, oLayout);
        EXPECT_EQ(iNumber.AsInt32(), oRow.iNumber);
        EXPECT_EQ(oResult.IsOk() ? "" : oResult.GetText().s_str(), oRow.sFailure ? oRow.sFailure : "");
        EXPECT_EQ(oResult.GetErrorCode(), oRow.sFailure ? 2 : 0);
    }
}

TEST(ConverterReading, ConsumesStandardIdentifiersBeforeTheValueIsAsked)
{
    std::string const sId = std::to_string(ValueInt32::GetStaticClassDesc().GetClassId());
    struct Row
    {
        char const * sFormat;
        std::string sText;
        int iCode; ///< 77 if the converter was asked
        char const * sAnswer;
    };
    Row const aRows[] = {
        {"${clsname}", "class tsl::ValueInt32!", 77, "!"},
        {"${clsname}", "class tsl::ValueInt", 2, "clsname not found"},
        {"${clsid}", sId + "!", 77, "!"},
        {"${clsid}", "x", 2, "clsid not found"},
        {"${null}", "true!!", 77, "!!"},
        {"${null}", "false!!", 77, "!"},
        {"${null}", "false", 77, ""},
        {"${null}", "fals", 2, "null not found"},
    };
    TrickyConverter const oConverter;
    for (Row const & oRow : aRows)
    {
        ValueInt32 iNumber(5);
        Result const oResult = oConverter.ConvertFromText(oRow.sText, iNumber, ListLayout(oRow.sFormat));
        EXPECT_EQ(oResult.GetErrorCode(), oRow.iCode) << oRow.sFormat << " from " << oRow.sText;
        EXPECT_EQ(oResult.GetText(), oRow.sAnswer) << oRow.sFormat << " from " << oRow.sText;
    }
}

TEST(ConverterReading, TakesTheNullFormatAsAWholeBeforeAllElse)
{
    ValueIntegerConverterLayout oLayout;
    oLayout.SetPrefix("(");
    oLayout.SetPostfix(")");
    ValueInt32 iNumber(5);
    EXPECT_EQ(Read("(NULL)", iNumber, oLayout).GetText(),
        "Only digits allowed. integer := [whitespace]*[-+][0-9]+[whitespace]*");
    EXPECT_EQ(Read("5", iNumber, TextLayout("${%5d}")).GetText(), "sIdentifier unknown");
    EXPECT_EQ(iNumber, 5);
    EXPECT_TRUE(Read("NULL", iNumber, oLayout).IsOk());
    EXPECT_TRUE(iNumber.IsNull());

    ValueString sText("NULL");
    ValueNull oNull;
    tsl::ValueStringConverterLayout const oText;
    EXPECT_TRUE(Read(sText, sText, oText).IsOk());
    EXPECT_TRUE(sText.IsNull());
    EXPECT_TRUE(Asserts("!sText.IsNull()", "", [&] { Read(sText, sText, oText); }));
    EXPECT_TRUE(Asserts("0", "not implemented", [&] { Read("x", sText, oText); }));
    EXPECT_TRUE(Asserts("0", "not implemented", [&] { Read("x", oNull, oText); }));
}

TEST(ResultText, ShowsNumberTextAndPlace)
{
    Result oResult(5, "x", Result(1, "hidden", Result::eCategoryDefault));
    oResult.SetSource("f", 3);
    oResult.SetCause("hidden");
    ValueString sText;
    EXPECT_EQ(oResult.AddAsString(sText), "Number=5,Text=x,File=f,Line=3");
    EXPECT_EQ(Write(oResult, tsl::ResultConverterLayout("${No}/${Cause}/${text}")), "5//");
    oResult.SetText(ValueString());
    EXPECT_EQ(Write(oResult, tsl::ResultConverterLayout("${Text}${clsname}")), "class tsl::Result");
    EXPECT_EQ(Write(Result(), tsl::ResultConverterLayout()), "NULL");

    Result const oRead = oResult.GetConverter().ConvertFromText("Number=5", oResult);
    EXPECT_EQ(oRead.GetErrorCode(), 3);
    EXPECT_EQ(oRead.GetText(), "Not implemented");
}

TEST(Layouts, TakeTheirTextsTogetherOrNotAtAll)
{
    ValueIntegerConverterLayout const oNew;
    EXPECT_TRUE(oNew.GetFormat() == "${%d}" && oNew.GetNullFormat() == "NULL");
    EXPECT_TRUE(oNew.GetPrefix() == "" && oNew.GetPostfix() == "");
    EXPECT_EQ(&oNew.GetSuitableLayout(ValueString()), &oNew);

    TextLayout oLayout("a", "b");
    EXPECT_FALSE(oLayout.SetFormat("bad"));
    EXPECT_FALSE(oLayout.SetFormat("c", "bad"));
    EXPECT_TRUE(Asserts("false", "TextLayout::TextLayout : Ungültiger Formatstring! String : \"bad\"",
        [&] { oLayout.DemandFormat("bad", "TextLayout"); }));
    EXPECT_TRUE(oLayout.GetFormat() == "a" && oLayout.GetNullFormat() == "b");
    EXPECT_TRUE(oLayout.SetFormat(oLayout.GetNullFormat(), oLayout.GetFormat()));
    EXPECT_TRUE(oLayout.GetFormat() == "b" && oLayout.GetNullFormat() == "a");

    ValueIntegerConverterLayout oSource("b");
    oSource.SetPrefix("<");
    std::unique_ptr<tsl::Root> const pCopy(oSource.GetCopy());
    oSource.SetPrefix(">");
    EXPECT_EQ(Write(ValueInt32(3), static_cast<ValueConverterLayout &>(*pCopy)), "<b");
}

TEST(LayoutCollections, OwnOneLayoutPerClass)
{
    auto pLayout = std::make_unique<ListLayout>("");
    EXPECT_EQ(&pLayout->GetSuitableLayout(ValueInt32()), &ValueInt32().GetConverter().GetDefaultLayout());

    auto * const pFirst = new ValueIntegerConverterLayout("1");
    pLayout->AddLayout(pFirst);
    pLayout->AddLayout(pFirst);
    EXPECT_EQ(&pLayout->GetSuitableLayout(ValueInt32()), pFirst);
    EXPECT_EQ(&pLayout->GetSuitableLayout(ValueString()), &ValueString().GetConverter().GetDefaultLayout());
    pLayout->AddLayout(new tsl::ValueStringConverterLayout);
    pLayout->AddLayout(new ValueIntegerConverterLayout("2"));
    EXPECT_EQ(Write(ValueInt32(5), pLayout->GetSuitableLayout(ValueInt32())), "2");
    EXPECT_TRUE(Asserts("pLayout", "ValueConverterLayoutCollection::AddLayout : Pointer ist NULL!",
        [&] { pLayout->AddLayout(nullptr); }));

    EXPECT_TRUE(pLayout->GetSeparator() == "," && pLayout->GetCollPrefix() == "("
                && pLayout->GetCollPostfix() == ")");
    pLayout->SetCollPrePostfix(pLayout->GetCollPostfix(), pLayout->GetCollPrefix());
    pLayout->SetSeparator("/");

    ListLayout oTarget("kept");
    oTarget.AddLayout(new tsl::ValueNullConverterLayout);
    ValueConverterLayout const * const pKept = &oTarget.GetSuitableLayout(ValueNull());
    oTarget.Set(*pLayout);
    ListLayout const oCopy(*pLayout);
    pLayout.reset();
    EXPECT_EQ(&oTarget.GetSuitableLayout(ValueNull()), pKept);
    for (ListLayout const * const pCopy : std::initializer_list<ListLayout const *>{&oTarget, &oCopy})
    {
        EXPECT_EQ(pCopy->GetFormat(), "");
        EXPECT_TRUE(
            pCopy->GetSeparator() == "/" && pCopy->GetCollPrefix() == ")" && pCopy->GetCollPostfix() == "(");
        EXPECT_EQ(Write(ValueInt32(5), pCopy->GetSuitableLayout(ValueInt32())), "2");
    }
}

} // namespace
