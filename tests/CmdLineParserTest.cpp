#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

using Texts = std::vector<std::string>;

/// What was parsed: "name=value name=value | parameter parameter", each value as it is asked for.
std::string Dump(CmdLineParser const & oParser)
{
    std::string sDump;
    std::vector<String> vNames = {"former"};
    oParser.GetOptions(vNames);
    for (String const & sName : vNames)
    {
        String sValue;
        EXPECT_TRUE(oParser.GetOption(sName.c_str(), sValue, CmdLineParser::eOptionAny)) << sName.c_str();
        sDump += sName.s_str() + '=' + sValue.s_str() + ' ';
    }

    sDump += '|';
    std::vector<String> vParameters = {"former"};
    oParser.GetParameters(vParameters);
    for (String const & sParameter : vParameters)
        sDump += ' ' + sParameter.s_str();
    return sDump;
}

Result Parse(CmdLineParser & oParser, Texts vArguments)
{
    std::vector<char *> vPointers;
    for (std::string & sArgument : vArguments)
        vPointers.push_back(sArgument.data());
    return oParser.SetCmdLine(static_cast<int>(vPointers.size()), vPointers.data());
}

TEST(CommandLine, IsSortedByPlaceAlone)
{
    std::pair<Texts, char const *> const aRows[] = {
        {{"prog", "-a", "1", "--bb", "/c", "d"}, "a=1 bb= c=d | prog"},
        {{"-n", "-5"}, "n= 5= |"},
        {{"-a", "", "", "x"}, "a= |  x"},
        {{"---x", "v", "-ab=c"}, "-x=v ab=c= |"},
        {{"-a", "1", "-a", "2"}, "a=1 a=1 |"},
        {{"/usr/bin/prog", "file"}, "usr/bin/prog=file |"},
        {{}, "|"},
    };
    CmdLineParser oParser;
    for (auto const & [vArguments, sDump] : aRows)
    {
        EXPECT_TRUE(Parse(oParser, vArguments).IsOk()) << sDump;
        EXPECT_EQ(Dump(oParser), sDump);
    }
}

TEST(CommandLine, IsSplitIfItIsOneText)
{
    CmdLineParser oParser;
    EXPECT_TRUE(oParser.SetCmdLine("  -a \"b c\"  d e\\ f \"/g\" ").IsOk());
    EXPECT_EQ(Dump(oParser), "a=b c g= | d e f");

    char aWord[] = "word";
    char * aArguments[] = {aWord, nullptr, aWord};
    CmdLineParser const oCopy(oParser); // copies share all
    EXPECT_TRUE(oParser.SetCmdLine(3, aArguments).IsOk());
    EXPECT_EQ(Dump(oCopy), "| word  word");
    EXPECT_TRUE(oParser.SetCmdLine(-1, aArguments).IsOk());
    EXPECT_TRUE(oParser.SetCmdLine(3, nullptr).IsOk());
    EXPECT_EQ(Dump(oCopy), "|");
}

TEST(CommandLine, RefusesAnOptionWithoutNameAndKeepsWhatIsInFront)
{
    CmdLineParser oParser;
    char const * const sRefusal = "1 Syntaxfehler: Eine Option muss aus midestens einem Zeichen bestehen.";
    for (char const * sOption : {"-", "--", "/"})
    {
        EXPECT_EQ(Tell(Parse(oParser, {"p", "-a", "1", sOption, "q"})), sRefusal) << sOption;
        EXPECT_EQ(Dump(oParser), "a=1 | p") << sOption;
    }
}

TEST(CommandLine, FindsAnOptionByNameAndPrefix)
{
    CmdLineParser oParser;
    EXPECT_TRUE(Parse(oParser, {"-a", "dash", "--a", "double", "/a", "slash", "-B"}).IsOk());
    auto const fGet = [&](char const * sName, CmdLineParser::OptionPrefix ePrefix)
    {
        String sValue = "former";
        bool const bFound = oParser.GetOption(sName, sValue, ePrefix);
        return (bFound ? "=" : "none") + sValue.s_str();
    };
    EXPECT_EQ(fGet("a", CmdLineParser::eOptionAny), "=dash");
    EXPECT_EQ(fGet("a", CmdLineParser::eOptionDoubleDash), "=double");
    EXPECT_EQ(fGet("a", CmdLineParser::eOptionSlash), "=slash");
    EXPECT_EQ(fGet("B", CmdLineParser::eOptionSlash), "none");
    EXPECT_EQ(fGet(nullptr, CmdLineParser::eOptionAny), "none");
}

} // namespace
