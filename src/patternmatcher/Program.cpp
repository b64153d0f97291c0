#include "Program.h"
namespace tsl::Pattern
{

namespace
{

/// What the paths of a program begin with.
struct Beginning
{
    ByteSet oFirst;
    bool bMatch = false;
};

enum class Paths
{
    eAll,
    eUnanchored ///< not those that are anchored to the beginning of the text
};

/// Follows all paths up to their first byte. Treats assertions as true.
Beginning Explore(Program const & oProgram, Paths ePaths)
{
    Beginning oResult;
    std::vector<bool> vSeen(oProgram.vCode.size());
    std::vector<std::uint32_t> vPending{0};
    while (!vPending.empty())
    {
        std::uint32_t const iPc = vPending.back();
        vPending.pop_back();
        if (vSeen[iPc])
            continue;
        vSeen[iPc] = true;

        Instruction const & oInstruction = oProgram.vCode[iPc];
        if (oInstruction.IsConsuming())
        {
            oResult.oFirst |= oProgram.GetBytes(oInstruction);
            continue;
        }
        oResult.bMatch |= oInstruction.eOp == Op::eMatch;
        if (ePaths == Paths::eUnanchored && oInstruction.eOp == Op::eAssert
            && Assertion(oInstruction.iArg) == Assertion::eTextBegin)
            continue;

        if (oInstruction.HasNext())
            vPending.push_back(iPc + 1);
        if (oInstruction.HasTarget())
            vPending.push_back(oInstruction.iArg);
    }
    return oResult;
}

/// The single bytes with which the program begins; only eSave may be between them.
std::string FindPrefix(std::vector<Instruction> const & vCode)
{
    std::string sPrefix;
    for (Instruction const & oInstruction : vCode)
    {
        if (oInstruction.eOp == Op::eByte)
            sPrefix += static_cast<char>(static_cast<unsigned char>(oInstruction.iArg));
        else if (oInstruction.eOp != Op::eSave)
            break;
    }
    return sPrefix;
}

} // namespace

void Program::Analyse()
{
    FindStates();
    FindBeginning();
}

void Program::FindStates()
{
    std::uint16_t iDepth = 0;
    std::vector<unsigned int> vEntries(vCode.size());
    for (std::size_t iPc = 0; iPc < vCode.size(); ++iPc)
    {
        // The code of a loop is contiguous, from eLoopBegin to eLoopCheck.
        Instruction & oInstruction = vCode[iPc];
        oInstruction.iDepth = iDepth;
        if (oInstruction.eOp == Op::eLoopBegin)
            ++iDepth;
        else if (oInstruction.eOp == Op::eLoopCheck)
            --iDepth;

        if (oInstruction.HasNext())
            ++vEntries[iPc + 1];
        if (oInstruction.HasTarget())
            ++vEntries[oInstruction.iArg];
    }

    for (std::size_t iPc = 0; iPc < vCode.size(); ++iPc)
    {
        Instruction & oInstruction = vCode[iPc];
        bool const bPathsMeet = vEntries[iPc] > 1 || (oInstruction.IsConsuming() && oInstruction.iDepth > 0);
        if (oInstruction.IsConsuming())
            oInstruction.iDepth = 0;
        if (bPathsMeet)
        {
            oInstruction.iState = static_cast<std::uint32_t>(iStates);
            iStates += oInstruction.iDepth + std::size_t{1};
        }
    }
}

void Program::FindBeginning()
{
    Beginning const oUnanchored = Explore(*this, Paths::eUnanchored);
    bAnchored = oUnanchored.oFirst.none() && !oUnanchored.bMatch;

    Beginning const oAll = Explore(*this, Paths::eAll);
    bNullable = oAll.bMatch;
    oFirst = bNullable ? ByteSet().set() : oAll.oFirst;
    sPrefix = FindPrefix(vCode);
}

std::size_t Program::FindStart(std::string_view sText, std::size_t iAt) const
{
    if (bAnchored)
        return iAt == 0 ? 0 : NOWHERE;
    if (!sPrefix.empty())
        return sText.find(sPrefix, iAt);
    while (iAt < sText.size() && !oFirst[static_cast<unsigned char>(sText[iAt])])
        ++iAt;
    return iAt < sText.size() || (iAt == sText.size() && bNullable) ? iAt : NOWHERE;
}

bool Program::CanStart(std::string_view sText, std::size_t iAt) const
{
    if (bAnchored)
        return iAt == 0;
    return iAt < sText.size() ? oFirst[static_cast<unsigned char>(sText[iAt])] : bNullable;
}

ByteSet Program::GetBytes(Instruction const & oInstruction) const
{
    return oInstruction.eOp == Op::eByte ? ByteSet().set(oInstruction.iArg) : vSets[oInstruction.iArg];
}

bool IsWordByte(unsigned char iByte)
{
    return (iByte >= 'a' && iByte <= 'z') || (iByte >= 'A' && iByte <= 'Z') || (iByte >= '0' && iByte <= '9')
           || iByte == '_';
}

static bool IsWordEdge(std::string_view sText, std::size_t iAt)
{
    auto const fIsWord = [sText](std::size_t i)
    { return i < sText.size() && IsWordByte(static_cast<unsigned char>(sText[i])); };
    // Before the first byte the index wraps around and is beyond the end of any text.
    return fIsWord(iAt - 1) != fIsWord(iAt);
}

bool Holds(Assertion eAssertion, std::string_view sText, std::size_t iAt)
{
    bool const bAtEnd = iAt == sText.size();
    bool const bAtLineEnd = !bAtEnd && sText[iAt] == '\n';
    switch (eAssertion)
    {
    case Assertion::eTextBegin:
        return iAt == 0;
    case Assertion::eTextEnd:
        return bAtEnd;
    case Assertion::eLastLineEnd:
        return bAtEnd || (bAtLineEnd && iAt + 1 == sText.size());
    case Assertion::eLineBegin:
        // After a line end that ends the text no line begins.
        return iAt == 0 || (!bAtEnd && sText[iAt - 1] == '\n');
    case Assertion::eLineEnd:
        return bAtEnd || bAtLineEnd;
    case Assertion::eWordEdge:
        return IsWordEdge(sText, iAt);
    case Assertion::eNoWordEdge:
        return !IsWordEdge(sText, iAt);
    }
    return false;
}

} // namespace tsl::Pattern
