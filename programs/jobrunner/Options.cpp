#include "Options.h"

#include "../shared/NearestName.h"

#include <tessel/CmdLineParser.h>

#include <algorithm>
#include <set>
#include <string>

namespace
{

using tsl::CmdLineParser;
using Action = Options::Action;

struct Option
{
    char const * sName;
    CmdLineParser::OptionPrefix ePrefix;
    bool bValue;
    Action eAction = Action::eRun;
};

constexpr Option OPTIONS[] = {
    {"help", CmdLineParser::eOptionDoubleDash, false, Action::eShowHelp},
    {"h", CmdLineParser::eOptionDash, false, Action::eShowHelp},
    {"version", CmdLineParser::eOptionDoubleDash, false, Action::eShowVersion},
    {"list", CmdLineParser::eOptionDoubleDash, false, Action::eShowList},
    {"dry-run", CmdLineParser::eOptionDoubleDash, false, Action::eShowOrder},
    {"dot", CmdLineParser::eOptionDoubleDash, false, Action::eShowDot},
    {"mermaid", CmdLineParser::eOptionDoubleDash, false, Action::eShowMermaid},
    {"keep-going", CmdLineParser::eOptionDoubleDash, false},
    {"fail-fast", CmdLineParser::eOptionDoubleDash, false},
    {"resume", CmdLineParser::eOptionDoubleDash, false},
    {"file", CmdLineParser::eOptionDoubleDash, true},
    {"j", CmdLineParser::eOptionDash, true},
};

std::string GetFullName(std::string const & sName, CmdLineParser::OptionPrefix ePrefix)
{
    return (ePrefix == CmdLineParser::eOptionDash       ? "-"
               : ePrefix == CmdLineParser::eOptionSlash ? "/"
                                                        : "--")
           + sName;
}

tsl::Result Refuse(std::string const & sText)
{
    return tsl::MakeResult(tsl::ERR::eBadData, tsl::String(sText + " --help tells all arguments."));
}

/// Takes one option after the other.
class Reader
{
public:
    Reader(CmdLineParser const & oParser, Options & oOptions) : m_oParser(oParser), m_oOptions(oOptions) {}

    tsl::Result Take(std::string const & sArgument)
    {
        // The parser gives the names without what is in front of them.
        CmdLineParser::OptionPrefix ePrefix = CmdLineParser::eOptionSlash;
        tsl::String sNextWord;
        for (auto const eTried : {CmdLineParser::eOptionDoubleDash, CmdLineParser::eOptionDash})
            if (m_oParser.GetOption(sArgument.c_str(), sNextWord, eTried))
                ePrefix = eTried;
        if (ePrefix == CmdLineParser::eOptionSlash)
            return Refuse(
                "'/" + sArgument + "' reads as an option. A file is given as --file=/" + sArgument + '.');
        static_cast<void>(m_oParser.GetOption(sArgument.c_str(), sNextWord, ePrefix)); // It is there.

        std::size_t const iName = GetNameLength(sArgument, ePrefix);
        std::string const sName = sArgument.substr(0, iName);
        auto const pOption = std::find_if(std::begin(OPTIONS), std::end(OPTIONS),
            [&](Option const & o) { return sName == o.sName && ePrefix == o.ePrefix; });
        if (pOption == std::end(OPTIONS))
            return RefuseUnknown(GetFullName(sName, ePrefix));
        if (!m_oSeen.insert(pOption->sName).second)
            return Refuse("The option '" + GetFullName(sName, ePrefix) + "' is given twice.");
        bool const bAttached = iName < sArgument.size();
        std::string const sAttached =
            bAttached ? sArgument.substr(iName + (sArgument[iName] == '=' ? 1 : 0)) : std::string();
        return Take(*pOption, bAttached, sAttached, sNextWord);
    }

    tsl::Result CheckTogether() const
    {
        if (m_oSeen.contains("keep-going") && m_oSeen.contains("fail-fast"))
            return Refuse("'--keep-going' and '--fail-fast' exclude each other.");
        if (m_iActions > 1)
            return Refuse("Only one of '--list', '--dry-run', '--dot' and '--mermaid' can be shown at once.");
        return tsl::Result();
    }

private:
    /// The value may be attached, as in --file=x, -j=4 and -j4.
    static std::size_t GetNameLength(std::string const & sArgument, CmdLineParser::OptionPrefix ePrefix)
    {
        bool const bNumber = ePrefix == CmdLineParser::eOptionDash && sArgument.size() > 1
                             && std::all_of(sArgument.begin() + 1, sArgument.end(),
                                 [](char c) { return c >= '0' && c <= '9'; });
        return bNumber ? 1 : std::min(sArgument.find('='), sArgument.size());
    }

    static tsl::Result RefuseUnknown(std::string const & sFullName)
    {
        std::vector<std::string> vNames;
        for (Option const & oOption : OPTIONS)
            vNames.push_back(GetFullName(oOption.sName, oOption.ePrefix));
        return Refuse("There is no option '" + sFullName + "'." + AskForNearest(sFullName, vNames));
    }

    tsl::Result Take(
        Option const & oOption, bool bAttached, std::string const & sAttached, tsl::String const & sNextWord)
    {
        std::string const sFullName = GetFullName(oOption.sName, oOption.ePrefix);
        if (!oOption.bValue)
        {
            if (bAttached)
                return Refuse("The option '" + sFullName + "' takes no value.");
            TakeFlag(oOption);
        }
        // What is not its value is the name of a job.
        if (!sNextWord.IsEmpty() && (bAttached || !oOption.bValue))
            m_oOptions.vJobs.push_back(sNextWord);
        if (!oOption.bValue)
            return tsl::Result();

        std::string const sValue = bAttached ? sAttached : sNextWord.s_str();
        if (sValue.empty())
            return Refuse("The option '" + sFullName
                          + "' needs a value. One that begins with '-' or '/' is given as " + sFullName
                          + "=VALUE.");
        return TakeValue(oOption, sValue);
    }

    void TakeFlag(Option const & oOption)
    {
        std::string const sName = oOption.sName;
        m_oOptions.bFailFast = m_oOptions.bFailFast || sName == "fail-fast";
        m_oOptions.bResume = m_oOptions.bResume || sName == "resume";
        if (oOption.eAction == Action::eRun)
            return;
        // Help first.
        m_iActions += oOption.eAction > Action::eShowVersion ? 1 : 0;
        m_oOptions.eAction = m_oOptions.eAction == Action::eRun
                                 ? oOption.eAction
                                 : std::min(m_oOptions.eAction, oOption.eAction);
    }

    tsl::Result TakeValue(Option const & oOption, std::string const & sValue)
    {
        if (*oOption.sName == 'f')
        {
            m_oOptions.sFile = sValue.c_str();
            return tsl::Result();
        }
        bool const bDigits =
            std::all_of(sValue.begin(), sValue.end(), [](char c) { return c >= '0' && c <= '9'; });
        m_oOptions.iParallel = bDigits && sValue.size() < 5 ? std::stoi(sValue) : 0;
        if (m_oOptions.iParallel == 0)
            return Refuse("'" + sValue + "' is no number of jobs from 1 to 9999, as in -j 4.");
        return tsl::Result();
    }

    CmdLineParser const & m_oParser;
    Options & m_oOptions;
    std::set<std::string> m_oSeen;
    int m_iActions = 0;
};

} // namespace

tsl::Result ReadOptions(int iCount, char ** pArguments, Options & oOptions)
{
    CmdLineParser oParser;
    if (oParser.SetCmdLine(iCount, pArguments).IsError())
        return Refuse("A '-', '--' or '/' alone means nothing.");

    Reader oReader(oParser, oOptions);
    std::vector<tsl::String> vNames;
    oParser.GetOptions(vNames);
    for (tsl::String const & sName : vNames)
        if (tsl::Result oResult = oReader.Take(sName.s_str()); oResult.IsError())
            return oResult;
    if (tsl::Result oResult = oReader.CheckTogether(); oResult.IsError())
        return oResult;

    std::vector<tsl::String> vJobs;
    oParser.GetParameters(vJobs);
    oOptions.vJobs.insert(oOptions.vJobs.end(), vJobs.begin(), vJobs.end());
    return tsl::Result();
}
