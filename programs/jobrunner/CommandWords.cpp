#include "CommandWords.h"

#include <tessel/String.h>

#include <algorithm>
#include <array>

std::vector<std::string> SplitCommand(std::string_view sCommand)
{
    std::vector<std::string> vWords;
    bool bQuoted = false;
    bool bInWord = false;
    for (char const c : sCommand)
    {
        bInWord = bInWord && (bQuoted || !tsl::String::IsSpace(c));
        if (!bInWord && !bQuoted && tsl::String::IsSpace(c))
            continue;
        if (!bInWord)
            vWords.emplace_back();
        bInWord = true;
        if (c == '"')
            bQuoted = !bQuoted;
        else
            vWords.back() += c;
    }
    return vWords;
}

std::string FindShellWord(std::string_view sCommand)
{
    // The longer ones first.
    static constexpr std::array<std::string_view, 5> aWords = {"&&", "||", "|", ">", "<"};
    bool bQuoted = false;
    for (std::size_t i = 0; i < sCommand.size(); ++i)
    {
        if (sCommand[i] == '"')
            bQuoted = !bQuoted;
        auto const pWord = std::find_if(aWords.begin(), aWords.end(),
            [&](std::string_view sWord) { return sCommand.substr(i).starts_with(sWord); });
        if (!bQuoted && pWord != aWords.end())
            return std::string(*pWord);
    }
    return {};
}
