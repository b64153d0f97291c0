#include "Arguments.h"

#include "../shared/NearestName.h"

#include <tessel/String.h>

#include <algorithm>

namespace
{

tsl::Result RefuseOption(std::string const & sName, std::vector<Option> const & vKnown)
{
    std::vector<std::string> vNames;
    for (Option const & oOption : vKnown)
        vNames.emplace_back(oOption.sName);
    return MakeUsageFailure("There is no option '" + sName + "'." + AskForNearest(sName, vNames)
                            + " A file of that name is given behind '--'.");
}

} // namespace

tsl::Result Arguments::Read(std::vector<std::string> const & vWords, std::vector<Option> const & vKnown)
{
    for (std::size_t i = 0; i < vWords.size(); ++i)
    {
        std::string const & sWord = vWords[i];
        if (sWord == "--")
        {
            m_vFiles.insert(
                m_vFiles.end(), vWords.begin() + static_cast<std::ptrdiff_t>(i) + 1, vWords.end());
            break;
        }
        if (!sWord.starts_with('-') || sWord == "-")
        {
            m_vFiles.push_back(sWord);
            continue;
        }

        std::size_t const iEqual = sWord.find('=');
        std::string const sName = sWord.substr(0, iEqual);
        auto const oOption = std::find_if(
            vKnown.begin(), vKnown.end(), [&](Option const & oKnown) { return sName == oKnown.sName; });
        if (oOption == vKnown.end())
            return RefuseOption(sName, vKnown);

        std::vector<std::string> & vValues = m_oOptions[sName];
        if (oOption->eTakes == Option::Takes::eNothing && iEqual != std::string::npos)
            return MakeUsageFailure("The option '" + sName + "' takes no value.");
        if (oOption->eTakes == Option::Takes::eNothing)
            continue;
        if (iEqual != std::string::npos)
            vValues.push_back(sWord.substr(iEqual + 1));
        else if (i + 1 < vWords.size() && !vWords[i + 1].starts_with("--"))
            vValues.push_back(vWords[++i]);
        else
            return MakeUsageFailure("The option '" + sName
                                    + "' needs a value. One that begins with '--' is given as " + sName
                                    + "=VALUE.");
    }
    return tsl::Result();
}

std::vector<std::string> const & Arguments::GetValues(std::string const & sOption) const
{
    static std::vector<std::string> const vNone;
    auto const oFound = m_oOptions.find(sOption);
    return oFound == m_oOptions.end() ? vNone : oFound->second;
}

tsl::Result MakeUsageFailure(std::string const & sText)
{
    return tsl::MakeResult(tsl::ERR::eBadData, tsl::String(sText));
}
