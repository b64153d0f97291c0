#include "TestPrelude.h"

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

std::string const EMPTY_NAME = " <- 2 The name must contain at least 1 character.";
std::string const BAD_NAME = " <- 2 The name may only contain alphanumeric characters.";

/// "open", "closed", and the name of the file.
std::string GetState(IniFile const & oIni)
{
    return (oIni.IsOpen() ? "open " : "closed ") + oIni.GetFileName().s_str();
}

/// A folder with one file, and the object that reads it.
class IniFiles : public testing::Test
{
protected:
    std::string Open(std::string const & sContent)
    {
        m_oFolder.WriteFile("test.ini", sContent);
        return Show(m_oIni.Open(GetPath()));
    }

    /// A failure as Tell, with FILE for the file; "" for a success.
    std::string Show(Result const & oResult) const
    {
        std::string sText = oResult.IsError() ? Tell(oResult) : "";
        for (std::size_t i = sText.find(GetPath()); i != std::string::npos; i = sText.find(GetPath()))
            sText.replace(i, GetPath().size(), "FILE");
        return sText;
    }

    std::string GetPath() const { return m_oFolder.GetPath("test.ini"); }

    TestProgram const m_oFolder{"Reporter"};
    IniFile m_oIni;
};

TEST_F(IniFiles, AreReadByTheRules)
{
    std::pair<std::string, char const *> const aRows[] = {
        {"[c]\r\nk=v\r\n", "[c]k=v;"},
        {"\t[ c ] anything]\n \v k\t =\f v w \n", "[c]k=v w;"},
        {"[c]\nk=a;b=c \"d\" \\\xE4", "[c]k=a;b=c \"d\" \\\xE4;"},
        {"[c]\nk=a\n+=b\n\n;\n+=   c\t\nK=d\n+=e", "[c]K=d e;k=a b c;"},
        {"[c]\n+=a\n+=b\nk=v\n+=w\n[d]\n+=x", "[c]=<not found>;k=v w;[d]=<not found>;"},
        {"[b]\nkey=1\nKey=2\n_=3\n/=4\n0=5\n[Debug/Switch]\n[a_1]\n[B]",
            "[B][Debug/Switch][a_1][b]/=4;0=5;Key=2;_=3;key=1;"},
        {"\0[x\n[c]\nk=a\0b\nl=c"s, "[c]k=a;l=c;"},
    };
    for (auto const & [sContent, sDump] : aRows)
    {
        EXPECT_EQ(Open(sContent), "") << sContent;
        EXPECT_EQ(Dump(m_oIni), sDump) << sContent;
    }
}

TEST_F(IniFiles, AreReadToTheFirstBadLine)
{
    Rows<std::string, std::string, std::string> aRows = {
        {"\n;\n+=1\n[x]", "3", "Chaptername expected. "},
        {"[c\0]"s, "1", "Token ']' expected."},
        {"[a]\n[b]\n[ a ]", "3", "Chapter 'a' already exists."},
        {"[c]\nk=v\n\nword\nl=w", "4", "Token '=' expected."},
        {"[c]\n=v", "2", "Name of key invalid." + EMPTY_NAME},
        {"[c]\nk=v\nK=v\n\tk = w\n", "4", "Key 'k' already exists in this Chapter."},
    };
    for (auto const & [sContent, sLine, sError] : aRows)
        EXPECT_EQ(Open(sContent),
            "2 Error while reading file 'FILE', line " + sLine + ". <- 2 Syntax error: " + sError);

    EXPECT_NE(Open("[c]\nk=v\n+=w\nbad\nl=x"), "");
    EXPECT_EQ(Dump(m_oIni), "[c]k=v w;");
}

TEST_F(IniFiles, HaveTheirLongLinesCut)
{
    auto const MakeKey = [](std::size_t iLength) { return "k=" + std::string(iLength - 2, 'v'); };
    // What stands behind a chapter line, what is taken of it, and the line that is bad.
    Rows<std::string, std::string, std::string> aRows = {
        {MakeKey(499) + "\n!", MakeKey(499), "4"}, // its line end is a line of its own
        {MakeKey(500) + "\n!", MakeKey(499), "3"},
        {std::string(499, ' ') + std::string(499, ';') + std::string(499, ' ') + "k=v\n!", "k=v", "6"},
        {"k=v\0"s + std::string(495, 'x') + "l=w", "k=v;l=w", ""}, // zero bytes count as well
        {"k=" + std::string(10'000'000, 'v'), MakeKey(499), "3"},
    };
    for (auto const & [sContent, sDump, sBadLine] : aRows)
    {
        std::string const sFailure = Open("[c]\n" + sContent);
        EXPECT_EQ(Dump(m_oIni), "[c]" + sDump + ";");
        EXPECT_EQ(sFailure.substr(0, sFailure.find(" <-")),
            sBadLine.empty() ? "" : "2 Error while reading file 'FILE', line " + sBadLine + ".");
    }
}

TEST_F(IniFiles, AreRefusedAtOnceIfTheyAreNotRegular)
{
    std::string const sPipe = m_oFolder.GetPath("pipe");
    ASSERT_EQ(::mkfifo(sPipe.c_str(), 0600), 0);
    for (std::string const & sName : {m_oFolder.GetPath("absent"), sPipe, "/dev/zero"s})
    {
        Result const oResult = m_oIni.Open(sName);
        EXPECT_TRUE(Show(oResult).starts_with("5 Error while opening file '" + sName + "'. <- ")) << sName;
        EXPECT_EQ(GetState(m_oIni), "closed ") << sName;
    }
    std::filesystem::create_directory(GetPath());
    EXPECT_EQ(m_oIni.Open(GetPath()).GetCategory(), Result::eCategoryIo);
    EXPECT_EQ(Show(m_oIni.Open(GetPath())), "2 Error while reading file 'FILE', line 1. <- "
                                            "2 IO-Error occoured while reading file 'FILE'. <- "
                                            "21 Is a directory");
}

TEST_F(IniFiles, StartFromNothingEachTime)
{
    EXPECT_EQ(Open("[c]\nk=v"), "");
    EXPECT_TRUE(Open("+=w").ends_with("Syntax error: Chaptername expected. "));
    EXPECT_EQ(Dump(m_oIni), "");
    EXPECT_EQ(Open("[c]\nl=w"), "");
    EXPECT_TRUE(m_oIni.Open(m_oIni.GetFileName()).IsOk());
    EXPECT_EQ(Dump(m_oIni), "[c]l=w;");
    IniFile oCopy(m_oIni);
    EXPECT_TRUE(oCopy.OpenEmpty().IsOk());
    EXPECT_EQ(GetState(m_oIni) + Dump(m_oIni), "open ") << "copies share all";
}

TEST_F(IniFiles, TellTheFirstReasonOfAFailure)
{
    Rows<std::string, std::string, std::string> aRows = {
        {" d ", " k! ", "KeyName ' k! ' not valid." + BAD_NAME},
        {"C", "k", "Chapter 'C' does not exist."},
        {" c ", " K ", "Key 'K' does not exist in chapter 'c'."},
    };
    EXPECT_EQ(Open("[c]\n+=nameless\nk=v"), "");
    for (auto const & [sChapter, sKey, sReason] : aRows)
    {
        SCOPED_TRACE(sReason);
        String sValue = "preset";
        int iValue = 77;
        Result oText(9, "stale", Result(9, "staler", Result::eCategoryIo));
        Result oNumber(oText);
        EXPECT_FALSE(m_oIni.GetString(sChapter, sKey, sValue, oText));
        EXPECT_FALSE(m_oIni.GetInt32(sChapter, sKey, iValue, oNumber));
        EXPECT_EQ(Show(oText), "2 Error accessing IniFile 'FILE'. " + sReason);
        EXPECT_EQ(oNumber, oText);
        EXPECT_EQ(sValue, "preset");
        EXPECT_EQ(iValue, 77);
        if (!sReason.starts_with("Chapter"))
            continue;
        std::vector<String> vKeys = {sChapter}; // which holds the name that is asked for
        EXPECT_EQ(m_oIni.GetKeys(vKeys[0], vKeys), oText);
        EXPECT_TRUE(vKeys.empty());
    }
}

TEST_F(IniFiles, GiveANumberOnlyAsItIsWritten)
{
    // 77 for those that are no numbers.
    std::pair<char const *, int> const aRows[] = {
        {"-5", -5},
        {"2147483647", INT_MAX},
        {"-2147483648", INT_MIN},
        {"2147483648", 77},
        {"-2147483649", 77},
        {"-", 77},
        {"+5", 77},
        {"5x", 77},
        {"\n+=5", 77},
    };
    std::string const sFailure =
        "2 Error accessing IniFile 'FILE'. Key 'k ' in chapter ' c' is no valid integer.";
    for (auto const & [sText, iNumber] : aRows)
    {
        SCOPED_TRACE(sText);
        EXPECT_EQ(Open("[c]\nk="s + sText), "");
        int iValue = 77;
        Result oResult(9, "stale", Result::eCategoryIo);
        EXPECT_EQ(m_oIni.GetInt32(" c", "k ", iValue, oResult), iNumber != 77);
        EXPECT_EQ(iValue, iNumber);
        EXPECT_EQ(Show(oResult), iNumber != 77 ? "" : sFailure);
    }
}

TEST_F(IniFiles, MustBeOpenForQueries)
{
    EXPECT_EQ(Open("[c]\nk=v"), "");
    m_oIni.Close();
    EXPECT_EQ(GetState(m_oIni), "closed ");

    String sValue;
    int iValue = 0;
    std::vector<String> vNames;
    EXPECT_TRUE(AllAssert("IsOpen()", "IniFile not open.",
        {[&] { m_oIni.GetString("c", "k", sValue); }, [&] { m_oIni.GetInt32("c", "k", iValue); },
            [&] { m_oIni.GetChapters(vNames); }, [&] { return m_oIni.GetKeys("c", vNames); }}));
}

TEST(ApplicationIniLimit, IsReportedLikeAReadError)
{
    TestProgram const oProgram("Reporter");
    std::filesystem::path const oIni = oProgram.GetPath() / "Reporter.ini";
    oProgram.WriteFile("Reporter.ini", "[A]\n");
    std::filesystem::resize_file(oIni, 64 * 1024 * 1024);
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "1 chapters\n");
    std::filesystem::resize_file(oIni, 64 * 1024 * 1024 + 1);
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "0 chapters\n");
    EXPECT_TRUE(Contains(oProgram.ReadFile("error_opening_inifile.log"),
        "Error opening inifile: Error while reading file 'Reporter.ini', line "));
    IniFile oOwn;
    EXPECT_TRUE(oOwn.Open(oIni.string()).IsOk()) << "a file of the program's own has none";
}

TEST(ApplicationIniLimit, OfTheMemoryIsReportedAndEndsNoProgram)
{
    // A sanitizer takes more address space than any limit would leave.
    if (*TESSEL_SANITIZE)
        GTEST_SKIP();

    TestProgram const oProgram("Reporter");
    std::string sIni = "[A]\n";
    for (int i = 0; i < 100'000; ++i)
        sIni += "k" + std::to_string(i) + '=' + std::string(400, 'v') + '\n';
    oProgram.WriteFile("Reporter.ini", sIni);
    EXPECT_EQ(oProgram.Run({"memory:60000000", "chapters"}).sOutput, "0 chapters\n");
    EXPECT_EQ(oProgram.ReadFile("error_opening_inifile.log"), "Error opening inifile: std::bad_alloc\n");
}

} // namespace
