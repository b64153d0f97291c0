#include <tessel/CmdLineParser.h>

#include <tessel/Support.h>

#include <algorithm>
#include <utility>

namespace tsl
{

namespace
{

struct Option
{
    CmdLineParser::OptionPrefix ePrefix;
    String sName; ///< without the prefix
    String sValue;
};

/// Returns eOptionAny for an argument that is no option.
CmdLineParser::OptionPrefix Classify(String const & sArgument)
{
    if (sArgument.s_str().starts_with("--"))
        return CmdLineParser::eOptionDoubleDash;
    if (sArgument.s_str().starts_with('-'))
        return CmdLineParser::eOptionDash;
    if (sArgument.s_str().starts_with('/'))
        return CmdLineParser::eOptionSlash;
    return CmdLineParser::eOptionAny;
}

} // namespace

struct TSL_HIDDEN CmdLineParser::Private
{
    Result Parse(std::vector<String> const & vArguments);

    std::vector<Option> vOptions;
    std::vector<String> vParameters;
};

CmdLineParser::CmdLineParser() : m(std::make_shared<Private>()) {}
CmdLineParser::CmdLineParser(CmdLineParser const & oSource) = default;
CmdLineParser & CmdLineParser::operator=(CmdLineParser const & oSource) = default;
CmdLineParser::~CmdLineParser() = default;

Result CmdLineParser::SetCmdLine(int iCount, char ** ppArguments)
{
    std::vector<String> vArguments;
    if (ppArguments)
        for (int i = 0; i < iCount; ++i)
            vArguments.emplace_back(ppArguments[i]);
    return m->Parse(vArguments);
}

Result CmdLineParser::SetCmdLine(String const & sCmdLine)
{
    constexpr int iFlags = Support::eSplitTrimLeft | Support::eSplitTrimRight | Support::eSplitSkipEmpty
                           | Support::eSplitQuotes | Support::eSplitRemoveEscape;
    std::vector<String> vArguments;
    Support::StringSplitter(sCmdLine, vArguments, ' ', iFlags, '\\');
    return m->Parse(vArguments);
}

bool CmdLineParser::GetOption(char const * sName, String & sValue, OptionPrefix ePrefix) const
{
    auto const oOption = std::find_if(m->vOptions.begin(), m->vOptions.end(),
        [&](Option const & o)
        { return (ePrefix == eOptionAny || ePrefix == o.ePrefix) && o.sName == sName; });
    bool const bFound = oOption != m->vOptions.end();
    sValue = bFound ? oOption->sValue : String();
    return bFound;
}

void CmdLineParser::GetOptions(std::vector<String> & vNames) const
{
    vNames.clear();
    for (Option const & oOption : m->vOptions)
        vNames.push_back(oOption.sName);
}

void CmdLineParser::GetParameters(std::vector<String> & vParameters) const
{
    vParameters = m->vParameters;
}

Result CmdLineParser::Private::Parse(std::vector<String> const & vArguments)
{
    vOptions.clear();
    vParameters.clear();

    for (std::size_t i = 0; i < vArguments.size(); ++i)
    {
        String const & sArgument = vArguments[i];
        OptionPrefix const ePrefix = Classify(sArgument);
        if (ePrefix == eOptionAny)
        {
            vParameters.push_back(sArgument);
            continue;
        }

        unsigned int const iPrefixLength = ePrefix == eOptionDoubleDash ? 2 : 1;
        if (sArgument.GetLength() == iPrefixLength)
            return Result(ERR::eAccessDenied,
                "Syntaxfehler: Eine Option muss aus midestens einem Zeichen bestehen.",
                Result::eCategoryDefault);

        Option oOption = {ePrefix, sArgument.Mid(iPrefixLength), String()};
        if (i + 1 < vArguments.size() && Classify(vArguments[i + 1]) == eOptionAny)
            oOption.sValue = vArguments[++i];
        vOptions.push_back(std::move(oOption));
    }
    return Result::Null();
}

} // namespace tsl
