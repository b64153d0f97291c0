#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The implementation of PatternMatcher: the compiler, the program that it makes of a pattern, and three
/// engines that run the program (OnePass, Backtracker, PikeVm).
namespace tsl::Pattern
{

using ByteSet = std::bitset<256>;

/// The positions of the sub-matches: group n begins at slot 2n and ends at slot 2n + 1.
using Slots = std::vector<std::size_t>;

/// No position: the slot of a group that took no part in the match, or a search that found nothing.
constexpr std::size_t NOWHERE = std::string_view::npos;

enum class Op : std::uint8_t
{
    eByte,      ///< consumes the byte iArg
    eSet,       ///< consumes a byte of the set iArg
    eMatch,     ///< the end of the pattern
    eJump,      ///< continues at iArg
    eSplitNext, ///< continues at the next instruction and, if that fails, at iArg
    eSplitJump, ///< continues at iArg and, if that fails, at the next instruction
    eSave,      ///< stores the position in slot iArg
    eAssert,    ///< continues if the Assertion iArg holds
    eLoopBegin, ///< begins an iteration that may match the empty text
    eLoopCheck  ///< ends it: continues at the next instruction, or at iArg if it matched the empty text
};

/// A condition on the position between two bytes. Lines end with "\n".
enum class Assertion : std::uint8_t
{
    eTextBegin,
    eTextEnd,
    eLastLineEnd, ///< the end of the text, or before a line end that ends the text
    eLineBegin,
    eLineEnd,
    eWordEdge,
    eNoWordEdge
};

/// An instruction. It numbers the states of a search, so that no state is visited twice and the search stays
/// linear in the length of the text.
///
/// Two paths that arrive at the same instruction and position continue alike, so only the first one, which
/// has the higher priority, is followed. They also have to agree in which enclosing loops began their
/// iteration at this position, since eLoopCheck leaves those loops. An inner iteration never begins before
/// the outer one, so one number suffices, the level: how many of the loops, from the outermost one, began
/// their iteration earlier.
struct Instruction
{
    Op eOp;

    /// The number of enclosing loops with eLoopBegin; higher levels are equivalent here. 0 for an instruction
    /// that consumes: after the byte, all iterations began earlier.
    std::uint16_t iDepth = 0;

    std::uint32_t iArg = 0;

    /// The first of the iDepth + 1 states in which paths can arrive here; NO_STATE if only one path leads
    /// here.
    std::uint32_t iState = NO_STATE;

    static constexpr std::uint32_t NO_STATE = UINT32_MAX;

    /// Whether it can continue at the next instruction.
    bool HasNext() const { return eOp != Op::eJump && eOp != Op::eMatch; }

    /// Whether it can continue at the instruction iArg.
    bool HasTarget() const
    {
        return eOp == Op::eJump || eOp == Op::eSplitNext || eOp == Op::eSplitJump || eOp == Op::eLoopCheck;
    }

    bool IsConsuming() const { return eOp == Op::eByte || eOp == Op::eSet; }
};

/// A compiled pattern. It is immutable, so any number of threads may run it at a time.
struct Program
{
    std::vector<Instruction> vCode;
    std::vector<ByteSet> vSets;

    /// The number of slots: two for each group, where the whole match is a group, too.
    std::size_t iSlots = 0;

    std::size_t iStates = 0;

    /// Matches begin only at the beginning of the text.
    bool bAnchored = false;

    /// The pattern may match the empty text.
    bool bNullable = false;

    /// The bytes that a match can begin with; all bytes if bNullable.
    ByteSet oFirst;

    /// A text with which every match begins.
    std::string sPrefix;

    /// Computes iDepth and iState of the instructions, and iStates and the fields after it. The targets of
    /// jumps must be instruction numbers.
    void Analyse();

    /// The first position from iAt on where a match may begin, or NOWHERE. iAt may be beyond the end of the
    /// text.
    std::size_t FindStart(std::string_view sText, std::size_t iAt) const;

    /// Whether a match may begin at iAt. May be true where FindStart with its longer check moves on.
    bool CanStart(std::string_view sText, std::size_t iAt) const;

    /// The bytes that a consuming instruction accepts.
    ByteSet GetBytes(Instruction const & oInstruction) const;

    /// Whether the instruction accepts the byte at iAt. False at the end of the text.
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

/// Whether the assertion holds at the position iAt, which is before the byte iAt or the end of the text.
bool Holds(Assertion eAssertion, std::string_view sText, std::size_t iAt);

/// Letters, digits and the underscore.
bool IsWordByte(unsigned char iByte);

} // namespace tsl::Pattern
