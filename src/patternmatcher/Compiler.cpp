#include "Compiler.h"

#include <patternmatcher/PatternMatcher.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tsl::Pattern
{

namespace
{

// The limits that PatternMatcher documents.
constexpr std::size_t NESTING_MAX = 1'000;
constexpr std::size_t REPETITION_MAX = 65'535;
constexpr std::size_t INSTRUCTIONS_MAX = 20'000;
// Limits the work for one byte: a search visits each instruction in each of its states at most once ...
constexpr std::size_t STEPS_MAX = 20'000;
// ... and copies one position for each slot of each consuming instruction.
constexpr std::size_t PLACES_MAX = 50'000;

constexpr std::size_t UNLIMITED = SIZE_MAX;

/// An item of a class, or an escape: a set of bytes, or a single byte, which can begin or end a range.
struct Item
{
    explicit Item(unsigned char iSingle) : iByte(iSingle), bSingle(true) { oSet.set(iSingle); }
    explicit Item(ByteSet const & oBytes) : oSet(oBytes) {}

    ByteSet oSet;
    unsigned char iByte = 0;
    bool bSingle = false;
};

struct Quantifier
{
    std::size_t iMin;
    std::size_t iMax;
    bool bGreedy = true;
};

/// The code that a quantifier applies to: from iBegin to the present end.
struct Atom
{
    std::size_t iBegin;
    bool bNullable;
};

/// An open group. The first one is the whole pattern.
struct Group
{
    std::size_t iPlace;
    std::size_t iBegin;
    std::optional<std::uint32_t> oSlot;

    /// Where the current branch begins, and whether it may match the empty text.
    std::size_t iBranch;
    bool bBranchNullable = true;

    /// Whether an earlier branch may match the empty text.
    bool bNullable = false;

    /// The jumps from the ends of the earlier branches to the end of the group.
    std::vector<std::size_t> vJumps;
};

ByteSet MakeRange(unsigned char iFirst, unsigned char iLast)
{
    ByteSet oSet;
    for (unsigned int i = iFirst; i <= iLast; ++i)
        oSet.set(i);
    return oSet;
}

ByteSet MakeSet(std::string_view sBytes)
{
    ByteSet oSet;
    for (char const c : sBytes)
        oSet.set(static_cast<unsigned char>(c));
    return oSet;
}

ByteSet MakeWordSet()
{
    ByteSet oSet;
    for (unsigned int i = 0; i < oSet.size(); ++i)
        oSet.set(i, IsWordByte(static_cast<unsigned char>(i)));
    return oSet;
}

/// Adds the other case of each letter.
ByteSet FoldCase(ByteSet oSet)
{
    for (unsigned int i = 'a'; i <= 'z'; ++i)
    {
        unsigned int const iUpper = i - 'a' + 'A';
        bool const bEither = oSet[i] || oSet[iUpper];
        oSet.set(i, bEither).set(iUpper, bEither);
    }
    return oSet;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Parses a pattern from front to back and emits the program. Until Finish, jumps are relative, so that code
/// can be moved and repeated.
class Compiler
{
public:
    Compiler(std::string_view sPattern, int iFlags) : m_sPattern(sPattern), m_iFlags(iFlags) {}

    Program Run();

private:
    // Reading
    bool IsEnd() const { return m_iPlace == m_sPattern.size(); }
    bool Accept(std::string_view sExpected);
    Atom ReadAtom();
    Atom ReadEscape();
    Item ReadEscapedItem();
    unsigned char ReadHexByte(std::size_t iPlace);
    ByteSet ReadClass();
    Item ReadClassItem();
    std::optional<Quantifier> ReadQuantifier();
    std::optional<Quantifier> ReadCount();
    std::size_t ReadNumber(std::size_t & iPlace) const;

    // Groups
    enum class GroupKind
    {
        eCapturing,
        ePlain
    };
    void OpenGroup(GroupKind eKind, std::size_t iPlace);
    void NextBranch();
    Atom CloseGroup();

    // Writing
    std::size_t GetSize() const { return m_oProgram.vCode.size(); }
    void Emit(Op eOp, std::size_t iArg = 0);
    Atom EmitBytes(Item const & oItem);
    Atom EmitAssertion(Assertion eAssertion);
    void Repeat(Atom const & oAtom, Quantifier const & oQuantifier);
    void SetTarget(std::size_t iPc, std::size_t iTarget);
    void Finish();

    [[noreturn]] void Fail(char const * sReason, std::size_t iPlace) const;

    std::string_view m_sPattern;
    int m_iFlags;
    std::size_t m_iPlace = 0;
    std::vector<Group> m_vGroups;
    Program m_oProgram;
};

Program Compiler::Run()
{
    OpenGroup(GroupKind::eCapturing, 0);
    while (!IsEnd())
    {
        std::size_t const iPlace = m_iPlace;
        if (Accept("(?:"))
            OpenGroup(GroupKind::ePlain, iPlace);
        else if (Accept("(?"))
            Fail("(? must be followed by :", iPlace);
        else if (Accept("("))
            OpenGroup(GroupKind::eCapturing, iPlace);
        else if (Accept("|"))
            NextBranch();
        else
        {
            Atom oAtom = ReadAtom();
            if (auto const oQuantifier = ReadQuantifier())
            {
                Repeat(oAtom, *oQuantifier);
                oAtom.bNullable |= oQuantifier->iMin == 0;
            }
            m_vGroups.back().bBranchNullable &= oAtom.bNullable;
        }
    }
    if (m_vGroups.size() > 1)
        Fail("missing ) for this group", m_vGroups.back().iPlace);
    CloseGroup();
    Emit(Op::eMatch);
    Finish();
    return std::move(m_oProgram);
}

// Reading

bool Compiler::Accept(std::string_view sExpected)
{
    if (m_sPattern.substr(m_iPlace, sExpected.size()) != sExpected)
        return false;
    m_iPlace += sExpected.size();
    return true;
}

Atom Compiler::ReadAtom()
{
    std::size_t const iPlace = m_iPlace;
    if (ReadQuantifier())
        Fail("nothing to repeat", iPlace);

    bool const bLineAnchors = m_iFlags & PatternMatcher::eLineAnchors;
    char const c = m_sPattern[m_iPlace++];
    switch (c)
    {
    case ')':
        if (m_vGroups.size() == 1)
            Fail("unmatched )", iPlace);
        return CloseGroup();
    case '[':
        return EmitBytes(Item(ReadClass()));
    case '\\':
        return ReadEscape();
    case '.':
        return EmitBytes(Item(m_iFlags & PatternMatcher::eDotMatchesLineEnd ? ~ByteSet() : ~MakeSet("\n")));
    case '^':
        return EmitAssertion(bLineAnchors ? Assertion::eLineBegin : Assertion::eTextBegin);
    case '$':
        return EmitAssertion(bLineAnchors ? Assertion::eLineEnd : Assertion::eLastLineEnd);
    default:
        return EmitBytes(Item(static_cast<unsigned char>(c)));
    }
}

/// Parses an escape outside of classes, from after its backslash.
Atom Compiler::ReadEscape()
{
    if (Accept("b"))
        return EmitAssertion(Assertion::eWordEdge);
    if (Accept("B"))
        return EmitAssertion(Assertion::eNoWordEdge);
    if (Accept("A"))
        return EmitAssertion(Assertion::eTextBegin);
    if (Accept("z"))
        return EmitAssertion(Assertion::eTextEnd);
    if (Accept("Z"))
        return EmitAssertion(Assertion::eLastLineEnd);
    return EmitBytes(ReadEscapedItem());
}

/// Parses an escape that denotes bytes, from after its backslash.
Item Compiler::ReadEscapedItem()
{
    std::size_t const iPlace = m_iPlace - 1;
    if (IsEnd())
        Fail("nothing behind the backslash", iPlace);

    char const c = m_sPattern[m_iPlace++];
    switch (c)
    {
    case 'd':
        return Item(MakeRange('0', '9'));
    case 'D':
        return Item(~MakeRange('0', '9'));
    case 's':
        return Item(MakeSet(" \t\n\r\f\v"));
    case 'S':
        return Item(~MakeSet(" \t\n\r\f\v"));
    case 'w':
        return Item(MakeWordSet());
    case 'W':
        return Item(~MakeWordSet());
    case 'a':
        return Item('\a');
    case 'e':
        return Item('\x1b');
    case 'f':
        return Item('\f');
    case 'n':
        return Item('\n');
    case 'r':
        return Item('\r');
    case 't':
        return Item('\t');
    case 'x':
        return Item(ReadHexByte(iPlace));
    default:
        // Other letters and digits are errors: elsewhere they have meanings that this class does not support.
        if (IsWordByte(static_cast<unsigned char>(c)) && c != '_')
            Fail(IsDigit(c) ? "references to groups are not supported" : "unknown escape", iPlace);
        return Item(static_cast<unsigned char>(c));
    }
}

unsigned char Compiler::ReadHexByte(std::size_t iPlace)
{
    constexpr std::string_view sDigits = "0123456789abcdef0123456789ABCDEF";
    std::size_t iByte = 0;
    for (int i = 0; i < 2; ++i)
    {
        std::size_t const iDigit = IsEnd() ? NOWHERE : sDigits.find(m_sPattern[m_iPlace]);
        if (iDigit == NOWHERE)
            Fail("\\x needs two hexadecimal digits", iPlace);
        iByte = iByte * 16 + iDigit % 16;
        ++m_iPlace;
    }
    return static_cast<unsigned char>(iByte);
}

/// Parses a class, from after its opening bracket.
ByteSet Compiler::ReadClass()
{
    std::size_t const iPlace = m_iPlace - 1;
    bool const bNegated = Accept("^");
    ByteSet oSet;
    // A closing bracket as the first item does not end the class.
    for (bool bFirst = true; bFirst || !Accept("]"); bFirst = false)
    {
        if (IsEnd())
            Fail("missing ] for this class", iPlace);

        std::size_t const iItem = m_iPlace;
        Item const oItem = ReadClassItem();
        oSet |= oItem.oSet;

        bool const bRange = oItem.bSingle && m_sPattern.substr(m_iPlace, 1) == "-"
                            && m_iPlace + 1 < m_sPattern.size() && m_sPattern[m_iPlace + 1] != ']';
        if (!bRange)
            continue;
        ++m_iPlace;
        Item const oLast = ReadClassItem();
        if (!oLast.bSingle)
            oSet.set('-');
        else if (oLast.iByte < oItem.iByte)
            Fail("this range runs backwards", iItem);
        else
            oSet |= MakeRange(oItem.iByte, oLast.iByte);
        oSet |= oLast.oSet;
    }
    if (m_iFlags & PatternMatcher::eIgnoreCase)
        oSet = FoldCase(oSet);
    return bNegated ? ~oSet : oSet;
}

Item Compiler::ReadClassItem()
{
    if (Accept("\\b"))
        return Item('\b');
    if (Accept("\\"))
        return ReadEscapedItem();
    if (m_sPattern.substr(m_iPlace, 2) == "[:" && m_sPattern.find(":]", m_iPlace) != NOWHERE)
        Fail("named classes are not supported", m_iPlace);
    return Item(static_cast<unsigned char>(m_sPattern[m_iPlace++]));
}

std::optional<Quantifier> Compiler::ReadQuantifier()
{
    std::optional<Quantifier> oQuantifier;
    if (Accept("*"))
        oQuantifier = {0, UNLIMITED};
    else if (Accept("+"))
        oQuantifier = {1, UNLIMITED};
    else if (Accept("?"))
        oQuantifier = {0, 1};
    else
        oQuantifier = ReadCount();

    if (oQuantifier && Accept("?"))
        oQuantifier->bGreedy = false;
    return oQuantifier;
}

/// Parses {m}, {m,} or {m,n}. No value for any other brace, which is an ordinary byte.
std::optional<Quantifier> Compiler::ReadCount()
{
    std::size_t iPlace = m_iPlace;
    auto const fAccept = [&](char c)
    {
        bool const bAccepted = iPlace < m_sPattern.size() && m_sPattern[iPlace] == c;
        iPlace += bAccepted;
        return bAccepted;
    };
    auto const fIsDigit = [&] { return iPlace < m_sPattern.size() && IsDigit(m_sPattern[iPlace]); };

    if (!fAccept('{') || !fIsDigit())
        return std::nullopt;
    Quantifier oCount{ReadNumber(iPlace), 0};
    oCount.iMax = oCount.iMin;
    if (fAccept(','))
        oCount.iMax = fIsDigit() ? ReadNumber(iPlace) : UNLIMITED;
    if (!fAccept('}'))
        return std::nullopt;

    if (oCount.iMin > REPETITION_MAX || (oCount.iMax > REPETITION_MAX && oCount.iMax != UNLIMITED))
        Fail("this count is above 65535", m_iPlace);
    if (oCount.iMin > oCount.iMax)
        Fail("this count runs backwards", m_iPlace);
    m_iPlace = iPlace;
    return oCount;
}

/// Parses the number at iPlace and moves iPlace after it. A number above REPETITION_MAX becomes
/// REPETITION_MAX + 1.
std::size_t Compiler::ReadNumber(std::size_t & iPlace) const
{
    std::size_t iNumber = 0;
    for (; iPlace < m_sPattern.size() && IsDigit(m_sPattern[iPlace]); ++iPlace)
        iNumber =
            std::min(iNumber * 10 + static_cast<std::size_t>(m_sPattern[iPlace] - '0'), REPETITION_MAX + 1);
    return iNumber;
}

// Groups

void Compiler::OpenGroup(GroupKind eKind, std::size_t iPlace)
{
    if (m_vGroups.size() > NESTING_MAX)
        Fail("groups are nested too deeply", iPlace);

    Group oGroup{};
    oGroup.iPlace = iPlace;
    oGroup.iBegin = GetSize();
    if (eKind == GroupKind::eCapturing)
    {
        oGroup.oSlot = static_cast<std::uint32_t>(m_oProgram.iSlots);
        m_oProgram.iSlots += 2;
        Emit(Op::eSave, *oGroup.oSlot);
    }
    oGroup.iBranch = GetSize();
    m_vGroups.push_back(std::move(oGroup));
}

/// Ends a branch: inserts before it a split between it and the following branches.
void Compiler::NextBranch()
{
    Group & oGroup = m_vGroups.back();
    Emit(Op::eJump);
    auto & vCode = m_oProgram.vCode;
    vCode.insert(vCode.begin() + static_cast<std::ptrdiff_t>(oGroup.iBranch), Instruction{Op::eSplitNext});
    SetTarget(oGroup.iBranch, GetSize());

    oGroup.vJumps.push_back(GetSize() - 1);
    oGroup.iBranch = GetSize();
    oGroup.bNullable |= std::exchange(oGroup.bBranchNullable, true);
}

Atom Compiler::CloseGroup()
{
    Group const oGroup = std::move(m_vGroups.back());
    m_vGroups.pop_back();
    for (std::size_t const iJump : oGroup.vJumps)
        SetTarget(iJump, GetSize());
    if (oGroup.oSlot)
        Emit(Op::eSave, *oGroup.oSlot + std::size_t{1});
    return {oGroup.iBegin, oGroup.bNullable || oGroup.bBranchNullable};
}

// Writing

void Compiler::Emit(Op eOp, std::size_t iArg)
{
    if (GetSize() >= INSTRUCTIONS_MAX)
        Fail("the pattern is too large", m_iPlace);
    m_oProgram.vCode.push_back({eOp, 0, static_cast<std::uint32_t>(iArg)});
}

Atom Compiler::EmitBytes(Item const & oItem)
{
    std::size_t const iBegin = GetSize();
    ByteSet const oSet =
        m_iFlags & PatternMatcher::eIgnoreCase && oItem.bSingle ? FoldCase(oItem.oSet) : oItem.oSet;
    if (oItem.bSingle && oSet.count() == 1)
        Emit(Op::eByte, oItem.iByte);
    else
    {
        Emit(Op::eSet, m_oProgram.vSets.size());
        m_oProgram.vSets.push_back(oSet);
    }
    return {iBegin, false};
}

Atom Compiler::EmitAssertion(Assertion eAssertion)
{
    Emit(Op::eAssert, static_cast<std::size_t>(eAssertion));
    return {GetSize() - 1, true};
}

/// Emits the atom as often as it may occur. The last copy of an unlimited repetition is a loop.
///
/// If an iteration matches the empty text and enough iterations are done, the repetition ends. Without this
/// check the loop would not end.
void Compiler::Repeat(Atom const & oAtom, Quantifier const & oQuantifier)
{
    auto const iBegin = m_oProgram.vCode.begin() + static_cast<std::ptrdiff_t>(oAtom.iBegin);
    std::vector<Instruction> const vBody(iBegin, m_oProgram.vCode.end());
    m_oProgram.vCode.erase(iBegin, m_oProgram.vCode.end());

    bool const bLoop = oQuantifier.iMax == UNLIMITED;
    std::size_t const iCopies = bLoop ? std::max<std::size_t>(oQuantifier.iMin, 1) : oQuantifier.iMax;
    // The split tries first what the quantifier prefers: greedy to repeat, lazy to leave.
    Op const eEnterOrLeave = oQuantifier.bGreedy ? Op::eSplitNext : Op::eSplitJump;
    Op const eRepeatOrLeave = oQuantifier.bGreedy ? Op::eSplitJump : Op::eSplitNext;
    std::vector<std::size_t> vLeaving;

    for (std::size_t iCopy = 1; iCopy <= iCopies; ++iCopy)
    {
        if (iCopy > oQuantifier.iMin)
        {
            vLeaving.push_back(GetSize());
            Emit(eEnterOrLeave);
        }
        std::size_t const iIteration = GetSize();
        bool const bMoreMayFollow = bLoop || iCopy < iCopies;
        bool const bCheck = oAtom.bNullable && iCopy >= oQuantifier.iMin && bMoreMayFollow;
        if (bCheck)
            Emit(Op::eLoopBegin);
        for (Instruction const & oInstruction : vBody)
            Emit(oInstruction.eOp, oInstruction.iArg);
        if (bCheck)
        {
            vLeaving.push_back(GetSize());
            Emit(Op::eLoopCheck);
        }
        if (bLoop && iCopy == iCopies)
        {
            Emit(eRepeatOrLeave);
            SetTarget(GetSize() - 1, iIteration);
        }
    }
    for (std::size_t const iPc : vLeaving)
        SetTarget(iPc, GetSize());
}

void Compiler::SetTarget(std::size_t iPc, std::size_t iTarget)
{
    m_oProgram.vCode[iPc].iArg = static_cast<std::uint32_t>(iTarget - iPc);
}

void Compiler::Finish()
{
    std::size_t iConsuming = 0;
    for (std::size_t iPc = 0; iPc < GetSize(); ++iPc)
    {
        Instruction & oInstruction = m_oProgram.vCode[iPc];
        // Backward distances are negative modulo 2^32, so the addition wraps around.
        if (oInstruction.HasTarget())
            oInstruction.iArg += static_cast<std::uint32_t>(iPc);
        iConsuming += oInstruction.IsConsuming();
    }
    m_oProgram.Analyse();
    std::size_t iSteps = 0;
    for (Instruction const & oInstruction : m_oProgram.vCode)
        iSteps += oInstruction.iDepth + std::size_t{1};
    if (iSteps > STEPS_MAX)
        Fail("too many loops are nested that may match nothing", m_sPattern.size());
    if (iConsuming * m_oProgram.iSlots > PLACES_MAX)
        Fail("too many groups for a pattern of this size", m_sPattern.size());
}

void Compiler::Fail(char const * sReason, std::size_t iPlace) const
{
    throw std::invalid_argument("PatternMatcher: " + std::string(sReason) + ", at position "
                                + std::to_string(iPlace) + " of the pattern \"" + std::string(m_sPattern)
                                + "\"");
}

} // namespace

Program Compile(std::string_view sPattern, int iFlags)
{
    return Compiler(sPattern, iFlags).Run();
}

} // namespace tsl::Pattern
