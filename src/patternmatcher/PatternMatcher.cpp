#include <patternmatcher/PatternMatcher.h>

#include "Backtracker.h"
#include "Compiler.h"
#include "OnePass.h"
#include "PikeVm.h"

#include <stdexcept>

namespace tsl
{

struct PatternMatcher::Matches::Private
{
    unsigned int iCount = 0;
    Pattern::Slots vSlots;

    Pattern::Slots vOnePass;
    Pattern::Backtracker::Memory oBacktracker;
    Pattern::PikeVm::Memory oPikeVm;
};

PatternMatcher::Matches::Matches() : m(std::make_unique<Private>()) {}
PatternMatcher::Matches::~Matches() = default;

unsigned int PatternMatcher::Matches::GetCount() const
{
    return m->iCount;
}

std::size_t PatternMatcher::Matches::GetBegin(unsigned int index) const
{
    return index < m->iCount ? m->vSlots[std::size_t{index} * 2] : npos;
}

std::size_t PatternMatcher::Matches::GetEnd(unsigned int index) const
{
    return index < m->iCount ? m->vSlots[std::size_t{index} * 2 + 1] : npos;
}

std::string_view PatternMatcher::Matches::GetText(std::string_view text, unsigned int index) const
{
    std::size_t const iBegin = GetBegin(index);
    return iBegin < text.size() ? text.substr(iBegin, GetEnd(index) - iBegin) : std::string_view();
}

static Pattern::Program CompileChecked(char const * pPattern, int iFlags)
{
    constexpr int iKnownFlags =
        PatternMatcher::eIgnoreCase | PatternMatcher::eLineAnchors | PatternMatcher::eDotMatchesLineEnd;
    if (pPattern == nullptr)
        throw std::invalid_argument("PatternMatcher: the pattern is a null pointer");
    if ((iFlags & ~iKnownFlags) != 0)
        throw std::invalid_argument("PatternMatcher: unknown flags " + std::to_string(iFlags)
                                    + " for the pattern \"" + std::string(pPattern) + "\"");
    return Pattern::Compile(pPattern, iFlags);
}

struct PatternMatcher::Private
{
    Private(char const * pPattern, int iFlags)
        : oProgram(CompileChecked(pPattern, iFlags)), oOnePass(Pattern::OnePass::Make(oProgram))
    {
    }

    bool Search(std::string_view sText, std::size_t iStart, Matches::Private & oMatches) const
    {
        if (oProgram.bAnchored && iStart > 0)
            return false;
        if (oOnePass)
            return oOnePass->Match(sText, oMatches.vSlots, oMatches.vOnePass);
        if (Pattern::Backtracker::Suits(oProgram, sText, iStart))
            return Pattern::Backtracker(oProgram, sText, oMatches.vSlots, oMatches.oBacktracker)
                .Search(iStart);
        return Pattern::PikeVm(oProgram, sText, oMatches.vSlots, oMatches.oPikeVm).Search(iStart);
    }

    Pattern::Program const oProgram;
    std::optional<Pattern::OnePass> const oOnePass;
    Matches oLast;
};

PatternMatcher::PatternMatcher(char const * pattern, int flags) : m(std::make_unique<Private>(pattern, flags))
{
}
PatternMatcher::~PatternMatcher() = default;

unsigned int PatternMatcher::Match(std::string const & text, unsigned int start) const
{
    return Match(text, start, m->oLast);
}

std::string PatternMatcher::substr(std::string const & text, unsigned int index) const
{
    return std::string(m->oLast.GetText(text, index));
}

unsigned int PatternMatcher::Match(std::string_view text, std::size_t start, Matches & oMatches) const
{
    // Set first, so that oMatches reports no match if the search runs out of memory.
    oMatches.m->iCount = 0;
    if (start <= text.size() && m->Search(text, start, *oMatches.m))
        oMatches.m->iCount = static_cast<unsigned int>(m->oProgram.iSlots / 2);
    return oMatches.m->iCount;
}

} // namespace tsl
