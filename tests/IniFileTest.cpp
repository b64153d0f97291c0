#include "AssertionTest.h"
#include "ProcessTest.h"

#include <sys/stat.h>

using namespace tsl;
using namespace tsltest;

namespace
{

using namespace std::string_literals;

/// All that the file holds, in the order in which it is listed: "[chapter]key=value;key=value;[chapter]".
std::string Dump(IniFile const & oIni)
{
    std::string sDump;
    std::vector<String> vChapters = {"former"};
    oIni.GetChapters(vChapters);
    for (String const & sChapter : vChapters)
    {
        sDump += '[' + sChapter.s_str() + ']';
        std::vector<String> vKeys = {"former"};
        EXPECT_TRUE(oIni.GetKeys(sChapter, vKeys).IsOk()) << sChapter.c_str();
        for (String const & sKey : vKeys)
        {
            String sValue = "<not found>";
            oIni.GetString(sChapter, sKey, sValue);
            sDump += sKey.s_str() + '=' + sValue.s_str() + ';';
        }
    }
    return sDump;
}

/// A folder with one file, and the object that reads it.
class IniFileBase : public testing::Test
{
protected:
    std::string Open(std::string const & sContent)
    {
        m_oFolder.WriteFile("test.ini", sContent);
        return Show(m_oIni.Open(GetPath()));
    }

    /// A failure and its history as "code.category text < code.category text", with FILE for the file.
    std::string Show(Result const & oResult) const
    {
        std::string sText;
        for (int i = -1; oResult.IsError() && i < oResult.GetHistorySize(); ++i)
        {
            Result const & o = i < 0 ? oResult : oResult.GetHistory(i);
            sText += (i < 0 ? "" : " < ") + std::to_string(o.GetErrorCode()) + '.'
                     + std::to_string(o.GetCategory()) + ' ' + o.GetText().c_str();
            bool const bSource = std::string_view(o.GetSourceFile()).starts_with("src/tessel/Ini");
            EXPECT_EQ(bSource, i < 0 || o.GetCategory() != Result::eCategoryDefault) << sText;
        }
        for (std::size_t i = sText.find(GetPath()); i != std::string::npos; i = sText.find(GetPath()))
            sText.replace(i, GetPath().size(), "FILE");
        return sText;
    }

    std::string GetPath() const { return m_oFolder.GetFolder() / "test.ini"; }

    TestProgram const m_oFolder{"Reporter"};
    IniFile m_oIni;
};

using IniFileReading = IniFileBase;
using IniFileOpening = IniFileBase;
using IniFileQueries = IniFileBase;

TEST_F(IniFileReading, TakesLinesByTheRules)
{
    std::pair<std::string, char const *> const aRows[] = {{"", ""}, {"[c]\nk=v", "[c]k=v;"},
        {"[c]\r\nk=v\r\n", "[c]k=v;"}, {"\t[ c ] anything]\n \v k\t =\f v w \n", "[c]k=v w;"},
        {"; [x\n\n  \n[c]\n  ; k=x\nk=v", "[c]k=v;"}, {"[c]\nk=", "[c]k=;"},
        {"[c]\nk=a;b=c \"d\" \\\xE4", "[c]k=a;b=c \"d\" \\\xE4;"},
        {"[c]\nk=a\n+=b\n\n;\n+=   c\t\nK=d\n+=e", "[c]K=d e;k=a b c;"}, {"[c]\nk=\n+=a", "[c]k= a;"},
        {"[c]\n+=a\n+=b\nk=v\n+=w\n[d]\n+=x", "[c]=<not found>;k=v w;[d]=<not found>;"},
        {"[b]\nkey=1\nKey=2\n_=3\n/=4\n0=5\n[Debug/Switch]\n[a_1]\n[B]",
            "[B][Debug/Switch][a_1][b]/=4;0=5;Key=2;_=3;key=1;"},
        {"\0[x\n[c]\nk=a\0b\nl=c"s, "[c]k=a;l=c;"}};
    for (auto const & [sContent, sDump] : aRows)
    {
        EXPECT_EQ(Open(sContent), "") << sContent;
        EXPECT_EQ(Dump(m_oIni), sDump) << sContent;
    }
}

TEST_F(IniFileReading, StopsAtTheFirstBadLineAndKeepsWhatStandsAbove)
{
    std::string const sEmptyName = " < 2.2 The name must contain at least 1 character.";
    std::string const sBadName = " < 2.2 The name may only contain alphanumeric characters.";
    Rows<std::string, std::string, std::string> aRows = {{"key=1\n[x]", "1", "Chaptername expected. "},
        {"\n;\n+=1\n[x]", "3", "Chaptername expected. "}, {"[x\n", "1", "Token ']' expected."},
        {"[c\0]"s, "1", "Token ']' expected."}, {"[ \t]", "1", "Name of chapter invalid." + sEmptyName},
        {"[a.b]", "1", "Name of chapter invalid." + sBadName},
        {"[\xE4]", "1", "Name of chapter invalid." + sBadName},
        {"[a]\n[b]\n[ a ]", "3", "Chapter 'a' already exists."},
        {"[c]\nk=v\n\nword\nl=w", "4", "Token '=' expected."},
        {"[c]\n=v", "2", "Name of key invalid." + sEmptyName},
        {"[c]\nk=v\n+= ", "3", "Name of key invalid." + sBadName},
        {"[c]\nk=v\nK=v\n\tk = w\n", "4", "Key 'k' already exists in this Chapter."}};
    for (auto const & [sContent, sLine, sError] : aRows)
        EXPECT_EQ(Open(sContent),
            "2.2 Error while reading file 'FILE', line " + sLine + ". < 2.2 Syntax error: " + sError);

    EXPECT_NE(Open("[c]\nk=v\n+=w\nbad\nl=x"), "");
    EXPECT_TRUE(m_oIni.IsOpen());
    EXPECT_EQ(m_oIni.GetFileName().s_str(), GetPath());
    EXPECT_EQ(Dump(m_oIni), "[c]k=v w;");
}

TEST_F(IniFileReading, CutsLongLines)
{
    auto const MakeKey = [](std::size_t iLength) { return "k=" + std::string(iLength - 2, 'v'); };
    // What stands behind a chapter line, what is taken of it, and the line that is bad.
    Rows<std::string, std::string, std::string> aRows = {{MakeKey(498) + "\n!", MakeKey(498), "3"},
        {MakeKey(499) + "\n!", MakeKey(499), "4"}, // its line end is a line of its own
        {MakeKey(500) + "\n!", MakeKey(499), "3"}, {MakeKey(499) + "l=w", MakeKey(499) + ";l=w", ""},
        {MakeKey(499) + "+=w", MakeKey(499) + " w", ""},
        {std::string(499, ' ') + std::string(499, ';') + std::string(499, ' ') + "k=v\n!", "k=v", "6"},
        {"k=v\0"s + std::string(495, 'x') + "l=w", "k=v;l=w", ""}, // zero bytes count as well
        {"k=" + std::string(10'000'000, 'v'), MakeKey(499), "3"}};
    for (auto const & [sContent, sDump, sBadLine] : aRows)
    {
        std::string const sFailure = Open("[c]\n" + sContent);
        EXPECT_EQ(Dump(m_oIni), "[c]" + sDump + ";");
        EXPECT_EQ(sFailure.substr(0, sFailure.find(" <")),
            sBadLine.empty() ? "" : "2.2 Error while reading file 'FILE', line " + sBadLine + ".");
    }
}

TEST_F(IniFileReading, IsQuickWhateverThereIsMuchOf)
{
    std::string sChapters;
    std::string sKeys = "[c]\n";
    std::string sContinued = "[c]\nk=\n";
    for (int i = 0; i < 100'000; ++i)
    {
        sChapters += "[c" + std::to_string(i) + "]\n";
        sKeys += "k" + std::to_string(i) + "=" + std::to_string(i) + "\n";
        sContinued += "+=123456789\n";
    }
    sKeys += "[d]\n[e]\nk=1\n[f]\nk=1\nl=2\nm=3\n";
    EXPECT_EQ(Open(sChapters), "");
    EXPECT_EQ(Dump(m_oIni).size(), sChapters.size() - 100'000);
    EXPECT_EQ(Open(sKeys), "");
    EXPECT_EQ(Dump(m_oIni).size(), sKeys.size() - 4);
    int iValue = 0;
    for (int i = 0; i < 100'000; ++i)
        ASSERT_TRUE(m_oIni.GetInt32("c", "k" + std::to_string(i), iValue) && iValue == i) << i;
    EXPECT_EQ(Open(sContinued), "");
    EXPECT_EQ(Dump(m_oIni).size(), 1'000'000U + 6);
    EXPECT_EQ(Open(std::string(10'000'000, ';') + std::string(10'000'000, '\0')), "");
}

TEST_F(IniFileOpening, RefusesAtOnceWhatIsNoRegularFile)
{
    std::string const sPipe = m_oFolder.GetFolder() / "pipe";
    std::string const sAbsent = m_oFolder.GetFolder() / "absent";
    ASSERT_EQ(::mkfifo(sPipe.c_str(), 0600), 0);

    for (std::string const & sName : {sAbsent, sPipe, "/dev/zero"s, ""s})
    {
        EXPECT_TRUE(m_oIni.OpenEmpty().IsOk());
        Result const oResult = m_oIni.Open(sName);
        std::string const sFailure = "5.0 Error while opening file '" + sName + "'. < ";
        EXPECT_EQ(Show(oResult).substr(0, sFailure.size()), sFailure);
        EXPECT_EQ(oResult.GetHistorySize(), 1) << sName;
        EXPECT_FALSE(m_oIni.IsOpen()) << sName;
        EXPECT_TRUE(m_oIni.GetFileName().IsEmpty()) << sName;
    }
    EXPECT_EQ(m_oIni.Open(sAbsent).GetHistory(0).GetErrorCode(), ENOENT);
}

TEST_F(IniFileOpening, FailsToReadADirectory)
{
    std::filesystem::create_directory(GetPath());
    EXPECT_EQ(Show(m_oIni.Open(GetPath())), "2.1 Error while reading file 'FILE', line 1. < "
                                            "2.1 IO-Error occoured while reading file 'FILE'.");
    EXPECT_EQ(m_oIni.GetFileName().s_str(), GetPath());
    EXPECT_EQ(Dump(m_oIni), "");
}

TEST_F(IniFileOpening, StartsFromNothingEachTime)
{
    EXPECT_EQ(Open("[c]\nk=v"), "");
    for (char const * sContent : {"l=w", "+=w"})
    {
        EXPECT_TRUE(Open(sContent).ends_with("Syntax error: Chaptername expected. ")) << sContent;
        EXPECT_EQ(Dump(m_oIni), "") << sContent;
    }

    // The name of the file is taken from the object that gives it up.
    EXPECT_EQ(Open("[c]\nl=w"), "");
    EXPECT_TRUE(m_oIni.Open(m_oIni.GetFileName()).IsOk());
    EXPECT_EQ(Dump(m_oIni), "[c]l=w;");

    IniFile oCopy(m_oIni);
    EXPECT_TRUE(oCopy.OpenEmpty().IsOk());
    EXPECT_TRUE(m_oIni.IsOpen() && m_oIni.GetFileName().IsEmpty()) << "copies share all";
    EXPECT_EQ(Dump(m_oIni), "");
}

TEST_F(IniFileQueries, TellTheFirstReasonOfAFailure)
{
    std::string const sEmptyName = " < 2.2 The name must contain at least 1 character.";
    std::string const sBadName = " < 2.2 The name may only contain alphanumeric characters.";
    Rows<std::string, std::string, std::string> aRows = {
        {"c.d", "!", "ChapterName 'c.d' not valid." + sBadName},
        {" ", "k", "ChapterName ' ' not valid." + sEmptyName},
        {" d ", " k! ", "KeyName ' k! ' not valid." + sBadName},
        {"c", "", "KeyName '' not valid." + sEmptyName}, {" d ", "l", "Chapter 'd' does not exist."},
        {"C", "k", "Chapter 'C' does not exist."}, {" c ", " K ", "Key 'K' does not exist in chapter 'c'."}};
    EXPECT_EQ(Open("[c]\n+=nameless\nk=v"), "");
    for (auto const & [sChapter, sKey, sReason] : aRows)
    {
        SCOPED_TRACE(sReason);
        String sValue = "preset";
        int iValue = 77;
        Result oText(9, "stale", Result(9, "staler", Result::eCategoryIo));
        Result oNumber(oText);
        EXPECT_FALSE(m_oIni.GetString(sChapter, sKey, sValue));
        EXPECT_FALSE(m_oIni.GetString(sChapter, sKey, sValue, oText));
        EXPECT_FALSE(m_oIni.GetInt32(sChapter, sKey, iValue));
        EXPECT_FALSE(m_oIni.GetInt32(sChapter, sKey, iValue, oNumber));
        EXPECT_EQ(Show(oText), "2.2 Error accessing IniFile 'FILE'. " + sReason);
        EXPECT_EQ(oNumber, oText);
        EXPECT_TRUE(sValue == "preset" && iValue == 77);
        std::vector<String> vKeys = {sChapter};
        if (sReason.starts_with("Chapter"))
        {
            EXPECT_EQ(m_oIni.GetKeys(vKeys[0], vKeys), oText) << "from the names that go";
            EXPECT_TRUE(vKeys.empty());
        }
    }
}

TEST_F(IniFileQueries, TakeANumberOnlyAsItIsWritten)
{
    // 77 for those that are no numbers.
    std::pair<char const *, int> const aRows[] = {{"12", 12}, {"-5", -5}, {"0", 0},
        {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1}, {"2147483648", 77}, {"-2147483649", 77},
        {"4294967297", 77}, {"99999999999999999999999", 77}, {"", 77}, {"-", 77}, {"-0", 77}, {"+5", 77},
        {"05", 77}, {"5x", 77}, {"5 6", 77}, {"0x10", 77}, {"1.0", 77}, {"word", 77}, {"\n+=5", 77}};
    for (auto const & [sText, iNumber] : aRows)
    {
        SCOPED_TRACE(sText);
        EXPECT_EQ(Open("[c]\nk="s + sText), "");
        int iValue = 77;
        EXPECT_EQ(m_oIni.GetInt32(" c", "k ", iValue), iNumber != 77);
        EXPECT_EQ(std::exchange(iValue, 77), iNumber);
        Result oResult(9, "stale", Result::eCategoryIo);
        m_oIni.GetInt32(" c", "k ", iValue, oResult);
        EXPECT_EQ(iValue, iNumber);
        EXPECT_EQ(Show(oResult),
            iNumber != 77
                ? ""
                : "2.2 Error accessing IniFile 'FILE'. Key 'k ' in chapter ' c' is no valid integer.");
    }
}

TEST_F(IniFileQueries, DemandAnOpenFile)
{
    EXPECT_EQ(Open("[c]\nk=v"), "");
    m_oIni.Close();
    EXPECT_FALSE(m_oIni.IsOpen());
    EXPECT_TRUE(m_oIni.GetFileName().IsEmpty());

    String sValue;
    int iValue = 0;
    std::vector<String> vNames;
    Result oResult;
    std::function<void()> const aCalls[] = {[&] { m_oIni.GetString("c", "k", sValue); },
        [&] { m_oIni.GetString("c", "k", sValue, oResult); }, [&] { m_oIni.GetInt32("c", "k", iValue); },
        [&] { m_oIni.GetInt32("c", "k", iValue, oResult); }, [&] { m_oIni.GetChapters(vNames); },
        [&] { static_cast<void>(m_oIni.GetKeys("c", vNames)); }};
    for (auto const & fCall : aCalls)
        EXPECT_TRUE(Asserts("IsOpen()", "IniFile not open.", fCall)) << &fCall - aCalls;
}

} // namespace
