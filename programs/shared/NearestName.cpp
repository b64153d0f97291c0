#include "NearestName.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{

char ToLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The edit distance: how many letters are inserted, removed or replaced, or neighbours swapped, to get one from
/// the other.
std::size_t GetDistance(std::string_view sLeft, std::string_view sRight)
{
    // The distances of one prefix of the left text to all prefixes of the right one; then those of shorter
    // prefixes.
    std::vector<std::size_t> vRow(sRight.size() + 1);
    std::iota(vRow.begin(), vRow.end(), 0);
    std::vector<std::size_t> vFormer;
    std::vector<std::size_t> vBeforeFormer;
    for (std::size_t i = 0; i < sLeft.size(); ++i)
    {
        vBeforeFormer = std::exchange(vFormer, vRow);
        vRow[0] = i + 1;
        for (std::size_t j = 0; j < sRight.size(); ++j)
        {
            auto const Same = [&](std::size_t k, std::size_t l)
            { return ToLower(sLeft[k]) == ToLower(sRight[l]); };
            vRow[j + 1] = std::min({vFormer[j] + (Same(i, j) ? 0 : 1), vFormer[j + 1] + 1, vRow[j] + 1});
            if (i > 0 && j > 0 && Same(i, j - 1) && Same(i - 1, j))
                vRow[j + 1] = std::min(vRow[j + 1], vBeforeFormer[j - 1] + 1);
        }
    }
    return vRow.back();
}

} // namespace

std::string GetNearestName(std::string_view sName, std::vector<std::string> const & vNames)
{
    // A text that is much longer than any name is close to none, and would only take time.
    constexpr std::size_t LENGTH_MAX = 100;
    if (sName.size() > LENGTH_MAX)
        return {};

    std::string sNearest;
    // Names of two letters differ by two at most, so only one step counts as close.
    std::size_t iNearest = sName.size() < 3 ? 1 : std::max<std::size_t>(sName.size() / 3, 1) + 1;
    for (std::string const & sOther : vNames)
        if (std::size_t const iDistance = GetDistance(sName, sOther); iDistance < iNearest)
        {
            iNearest = iDistance;
            sNearest = sOther;
        }
    return sNearest;
}

std::string AskForNearest(std::string_view sName, std::vector<std::string> const & vNames)
{
    std::string const sNearest = GetNearestName(sName, vNames);
    return sNearest.empty() ? "" : " Did you mean '" + sNearest + "'?";
}
