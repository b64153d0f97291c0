#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The inside of PatternMatcher: a compiler, the program that it makes of a pattern, and the executors.
namespace tsl::Pattern
{

using ByteSet = std::bitset<256>;

/// The positions of the sub-matches: group n begins at slot 2n and ends at slot 2n + 1.
using Slots = std::vector<std::size_t>;

/// No position: a slot of a group that took no part, or a search without success.
constexpr std::size_t NOWHERE = std::string_view::npos;

enum class Op : std::uint8_t
{
    eByte,      ///< consumes the byte iArg
    eSet,       ///< consumes a byte of the set iArg
    eMatch,     ///< the end of the pattern
    eJump,      ///< goes on at iArg
    eSplitNext, ///< goes on at the next instruction and, if that fails, at iArg
    eSplitJump, ///< goes on at iArg and, if that fails, at the next instruction
    eSave,      ///< stores the position in slot iArg
    eAssert,    ///< goes on if the Assertion iArg holds
    eLoopBegin, ///< an iteration that may match nothing begins
    eLoopCheck  ///< it ends: goes on at the next instruction, or leaves for iArg if it has matched nothing
};

/// A condition on the place between two bytes. Lines end with "\n".
enum class Assertion : std::uint8_t
{
    eTextBegin,
    eTextEnd,
    eLastLineEnd, ///< the end of the text, or the line end that ends the text
    eLineBegin,
    eLineEnd,
    eWordEdge,
    eNoWordEdge
};

/// Instructions carry what a search has to remember, so that it walks no path twice and stays linear.
///
/// Two paths that meet at the same instruction and position have the same future, so that only the first
/// one, which has the higher priority, needs to be walked. One thing more decides on the future: which
/// of the enclosing loops began their iteration at this very position, for those end with the
/// iteration. As an inner iteration never began before an outer one, a single number tells them all: the
/// level, which counts the outermost loops whose iteration began earlier.
struct Instruction
{
    Op eOp;

    /// Number of enclosing loops with eLoopBegin; levels above it are alike here. 0 for those that
    /// consume, since behind the byte all iterations have begun earlier.
    std::uint16_t iDepth = 0;

    std::uint32_t iArg = 0;

    /// Number of the first of the iDepth + 1 states that paths can be in when they meet here, or
    /// NO_STATE where only one path leads.
    std::uint32_t iState = NO_STATE;

    static constexpr std::uint32_t NO_STATE = UINT32_MAX;

    /// Whether the next instruction is a successor.
    bool HasNext() const { return eOp != Op::eJump && eOp != Op::eMatch; }

    /// Whether iArg is an instruction and a successor.
    bool HasTarget() const
    {
        return eOp == Op::eJump || eOp == Op::eSplitNext || eOp == Op::eSplitJump || eOp == Op::eLoopCheck;
    }

    bool IsConsuming() const { return eOp == Op::eByte || eOp == Op::eSet; }
};

/// A compiled pattern. It does not change any more, so that any number of threads may run it.
struct Program
{
    std::vector<Instruction> vCode;
    std::vector<ByteSet> vSets;

    /// Two for each group, the whole match included.
    std::size_t iSlots = 0;

    std::size_t iStates = 0;

    /// A match can begin only at the beginning of the text.
    bool bAnchored = false;

    /// The pattern may match the empty text; oFirst is then full.
    bool bNullable = false;

    /// The bytes that a match can begin with.
    ByteSet oFirst;

    /// What every match begins with.
    std::string sPrefix;

    /// Fills in everything below vSets; iArg of jumps are instructions by then.
    void Analyse();

    /// The first position from iAt on where a match may begin, or NOWHERE. iAt may lie behind the text.
    std::size_t FindStart(std::string_view sText, std::size_t iAt) const;

    /// Whether FindStart would stay at iAt.
    bool CanStart(std::string_view sText, std::size_t iAt) const;

    /// What an instruction that consumes takes.
    ByteSet GetBytes(Instruction const & oInstruction) const;

    /// Whether the instruction takes the byte at iAt, which may be the end of the text.
    bool Consumes(Instruction const & oInstruction, std::string_view sText, std::size_t iAt) const
    {
        if (iAt == sText.size())
            return false;
        unsigned char const iByte = static_cast<unsigned char>(sText[iAt]);
        return oInstruction.eOp == Op::eByte ? iByte == oInstruction.iArg : vSets[oInstruction.iArg][iByte];
    }

private:
    void FindStates();
    void FindBeginning();
};

/// Whether the assertion holds in front of the byte at iAt, which may be the end of the text.
bool Holds(Assertion eAssertion, std::string_view sText, std::size_t iAt);

/// Letters, digits and the underscore.
bool IsWordByte(unsigned char iByte);

} // namespace tsl::Pattern
