#include "OnePass.h"

#include <algorithm>
#include <utility>

namespace tsl::Pattern
{

/// Fills a table row by row. A row follows all paths from one instruction to their next bytes.
class OnePassMaker
{
public:
    explicit OnePassMaker(Program const & oProgram) : m_oProgram(oProgram) {}

    std::optional<OnePass> Make();

private:
    /// The effect of a path.
    struct Effect
    {
        std::vector<Assertion> vAssertions;
        std::vector<std::uint32_t> vSlots;
    };

    /// A path from the instruction of a row to another instruction, and its effect.
    struct Way
    {
        std::uint32_t iPc;
        Effect oEffect;
    };

    struct Row
    {
        /// The instruction with which the row begins.
        std::uint32_t iPc;

        /// The effect of a path to a match; 0 if there is none.
        std::uint16_t iMatch = 0;
    };

    void MakeColumns();
    bool FillRow(std::size_t iRow);
    bool Follow(Way oWay, std::size_t iRow);
    bool AddMatch(Way const & oWay, std::size_t iRow);
    bool AddActions(Way const & oWay, std::size_t iRow);
    std::size_t FindRow(std::uint32_t iPc);
    std::uint16_t AddEffect(Effect const & oEffect);
    void NoteMatches();
    void NoteIntervals();
    static OnePass::Interval MakeInterval(ByteSet const & oBytes);

    /// Appends the elements and returns where they are.
    template<class Element>
    static OnePass::Effect::Part Append(std::vector<Element> & vAll, std::vector<Element> const & vElements)
    {
        auto const iBegin = static_cast<std::uint32_t>(vAll.size());
        vAll.insert(vAll.end(), vElements.begin(), vElements.end());
        return {iBegin, static_cast<std::uint32_t>(vAll.size())};
    }

    bool IsLarge() const
    {
        return m_oTable.m_vActions.size() + GetWidth() > ACTIONS_MAX
               || m_oTable.m_vAssertions.size() + m_oTable.m_vSlots.size() > EFFECT_ELEMENTS_MAX;
    }

    std::size_t GetWidth() const { return m_oTable.GetWidth(); }
    bool IsSure(std::uint16_t iEffect) const
    {
        OnePass::Effect const & oEffect = m_oTable.m_vEffects[iEffect];
        return oEffect.oAssertions.iBegin == oEffect.oAssertions.iEnd;
    }

    // They keep the work and the table small, and the numbers of effects within 16 bits.
    static constexpr std::size_t INSTRUCTIONS_MAX = 1'000;
    static constexpr std::size_t ACTIONS_MAX = 16'384;
    static constexpr std::size_t EFFECT_ELEMENTS_MAX = 16'384;

    Program const & m_oProgram;
    OnePass m_oTable;

    /// The first row begins at the beginning of the text.
    std::vector<Row> m_vRows{Row{0}};

    // While a row is filled: the pending paths, the one with the highest priority last, and the visited
    // instructions.
    std::vector<Way> m_vPending;
    std::vector<bool> m_vSeen;
};

std::optional<OnePass> OnePass::Make(Program const & oProgram)
{
    return OnePassMaker(oProgram).Make();
}

std::optional<OnePass> OnePassMaker::Make()
{
    if (!m_oProgram.bAnchored || m_oProgram.vCode.size() > INSTRUCTIONS_MAX)
        return std::nullopt;

    m_oTable.m_iSlots = m_oProgram.iSlots;
    MakeColumns();
    for (std::size_t iRow = 0; iRow < m_vRows.size(); ++iRow)
    {
        if (IsLarge() || !FillRow(iRow))
            return std::nullopt;
    }
    NoteMatches();
    NoteIntervals();
    return std::move(m_oTable);
}

void OnePassMaker::MakeColumns()
{
    // A column ends at a byte if an instruction accepts it and not the next byte, or the other way round.
    ByteSet oLast;
    for (Instruction const & oInstruction : m_oProgram.vCode)
    {
        if (oInstruction.IsConsuming())
        {
            ByteSet const oBytes = m_oProgram.GetBytes(oInstruction);
            oLast |= oBytes ^ (oBytes >> 1);
        }
    }
    oLast.reset(oLast.size() - 1);

    std::uint8_t iColumn = 0;
    for (std::size_t i = 0; i < oLast.size(); ++i)
    {
        m_oTable.m_aColumns[i] = iColumn;
        iColumn = static_cast<std::uint8_t>(iColumn + oLast[i]);
    }
    m_oTable.m_iEndColumn = m_oTable.m_aColumns.back() + std::size_t{1};
}

/// False, as in the functions below, if the program does not qualify for a table.
bool OnePassMaker::FillRow(std::size_t iRow)
{
    m_oTable.m_vActions.resize((iRow + 1) * GetWidth());
    m_vSeen.assign(m_oProgram.vCode.size(), false);
    m_vPending.push_back({m_vRows[iRow].iPc, {}});
    while (!m_vPending.empty())
    {
        Way oWay = std::move(m_vPending.back());
        m_vPending.pop_back();
        if (!Follow(std::move(oWay), iRow))
            return false;
    }
    return true;
}

/// Follows a path to its first byte or its end. Where it branches, the other branch becomes pending.
bool OnePassMaker::Follow(Way oWay, std::size_t iRow)
{
    for (;;)
    {
        if (m_vSeen[oWay.iPc])
            return false;
        m_vSeen[oWay.iPc] = true;

        Instruction const & oInstruction = m_oProgram.vCode[oWay.iPc];
        switch (oInstruction.eOp)
        {
        case Op::eByte:
        case Op::eSet:
            return AddActions(oWay, iRow);
        case Op::eMatch:
            return AddMatch(oWay, iRow);
        case Op::eJump:
            oWay.iPc = oInstruction.iArg;
            continue;
        case Op::eSplitNext:
            m_vPending.push_back({oInstruction.iArg, oWay.oEffect});
            break;
        case Op::eSplitJump:
            m_vPending.push_back({oWay.iPc + 1, oWay.oEffect});
            oWay.iPc = oInstruction.iArg;
            continue;
        case Op::eSave:
            oWay.oEffect.vSlots.push_back(oInstruction.iArg);
            break;
        case Op::eAssert:
            if (Assertion(oInstruction.iArg) != Assertion::eTextBegin)
                oWay.oEffect.vAssertions.push_back(Assertion(oInstruction.iArg));
            else if (iRow != 0)
                return true;
            break;
        case Op::eLoopBegin:
        case Op::eLoopCheck:
            return false;
        }
        ++oWay.iPc;
    }
}

bool OnePassMaker::AddMatch(Way const & oWay, std::size_t iRow)
{
    // A match without assertions has priority over all pending paths. One with assertions may fail, so two
    // paths would remain.
    if (!oWay.oEffect.vAssertions.empty() && !m_vPending.empty())
        return false;
    m_vPending.clear();
    m_vRows[iRow].iMatch = AddEffect(oWay.oEffect);
    return true;
}

bool OnePassMaker::AddActions(Way const & oWay, std::size_t iRow)
{
    // An empty class adds no effect, so there are never more effects than actions and rows.
    ByteSet const oBytes = m_oProgram.GetBytes(m_oProgram.vCode[oWay.iPc]);
    if (oBytes.none())
        return true;

    OnePass::Action oAction;
    oAction.iEffect = AddEffect(oWay.oEffect);
    oAction.iRow = static_cast<std::uint32_t>(FindRow(oWay.iPc + 1) * GetWidth());
    std::vector<bool> vDone(GetWidth());
    for (std::size_t i = 0; i < oBytes.size(); ++i)
    {
        std::size_t const iColumn = m_oTable.m_aColumns[i];
        if (!oBytes[i] || vDone[iColumn])
            continue;
        auto & oCell = m_oTable.m_vActions[iRow * GetWidth() + iColumn];
        if (oCell.iEffect != OnePass::Action::DEAD)
            return false;
        oCell = oAction;
        vDone[iColumn] = true;
    }
    return true;
}

std::size_t OnePassMaker::FindRow(std::uint32_t iPc)
{
    auto const itRow =
        std::find_if(m_vRows.begin(), m_vRows.end(), [iPc](Row const & oRow) { return oRow.iPc == iPc; });
    std::size_t const iRow = static_cast<std::size_t>(itRow - m_vRows.begin());
    if (itRow == m_vRows.end())
        m_vRows.push_back({iPc});
    return iRow;
}

std::uint16_t OnePassMaker::AddEffect(Effect const & oEffect)
{
    if (oEffect.vAssertions.empty() && oEffect.vSlots.empty())
        return 0;
    m_oTable.m_vEffects.push_back(
        {Append(m_oTable.m_vAssertions, oEffect.vAssertions), Append(m_oTable.m_vSlots, oEffect.vSlots)});
    return static_cast<std::uint16_t>(m_oTable.m_vEffects.size() - 1);
}

/// Stores in each action the match before its byte, unless the next row surely matches, too. Then marks the
/// actions that stay in their row without an effect.
void OnePassMaker::NoteMatches()
{
    for (std::size_t i = 0; i < m_oTable.m_vActions.size(); ++i)
    {
        auto & oAction = m_oTable.m_vActions[i];
        std::uint16_t const iNextMatch = m_vRows[oAction.iRow / GetWidth()].iMatch;
        bool const bSureToFollow = oAction.iEffect != OnePass::Action::DEAD && IsSure(oAction.iEffect)
                                   && iNextMatch != 0 && IsSure(iNextMatch);
        if (!bSureToFollow)
            oAction.iMatch = m_vRows[i / GetWidth()].iMatch;

        bool const bSameRow = oAction.iRow / GetWidth() == i / GetWidth();
        if (bSameRow && oAction.iEffect == 0 && oAction.iMatch == 0)
            oAction.iEffect = OnePass::Action::STAY;
    }
}

OnePass::Interval OnePassMaker::MakeInterval(ByteSet const & oBytes)
{
    std::size_t iFirst = 0;
    while (iFirst < oBytes.size() && !oBytes[iFirst])
        ++iFirst;
    std::size_t iEnd = iFirst;
    while (iEnd < oBytes.size() && oBytes[iEnd])
        ++iEnd;
    if (oBytes.none() || iEnd - iFirst != oBytes.count())
        return {};
    return {static_cast<std::uint8_t>(iFirst), static_cast<std::uint8_t>(iEnd - 1)};
}

void OnePassMaker::NoteIntervals()
{
    for (std::size_t iRow = 0; iRow < m_vRows.size(); ++iRow)
    {
        OnePass::Action const * const pRow = &m_oTable.m_vActions[iRow * GetWidth()];
        ByteSet oStaying;
        for (std::size_t i = 0; i < oStaying.size(); ++i)
            oStaying[i] = m_oTable.Stays(pRow, static_cast<char>(i));
        m_oTable.m_vIntervals.push_back(MakeInterval(oStaying));
    }
}

/// Returns the first position from iAt on where the row does not stay the same. Until then, the lookups of
/// successive bytes do not depend on each other (R09).
inline std::size_t OnePass::Skip(Action const * pRow, std::string_view sText, std::size_t iAt) const
{
    while (iAt < sText.size() && Stays(pRow, sText[iAt]))
        if (++iAt % BLOCK == 0)
            iAt = SkipBlocks(
                m_vIntervals[static_cast<std::size_t>(pRow - m_vActions.data()) / GetWidth()], sText, iAt);
    return iAt;
}

/// Skips the blocks whose bytes are all in the interval. The compiler compares a whole block by vector
/// instructions (R09).
[[gnu::noinline]] std::size_t OnePass::SkipBlocks(Interval oInterval, std::string_view sText, std::size_t iAt)
{
    auto const iSpan = static_cast<std::uint8_t>(oInterval.iLast - oInterval.iFirst);
    bool const bEmpty = oInterval.iFirst > oInterval.iLast;
    for (; !bEmpty && sText.size() - iAt >= BLOCK; iAt += BLOCK)
    {
        std::uint8_t iOutside = 0;
        for (std::size_t i = 0; i < BLOCK; ++i)
        {
            auto const iDistance = static_cast<std::uint8_t>(sText.data()[iAt + i] - oInterval.iFirst);
            iOutside = static_cast<std::uint8_t>(iOutside | (iDistance > iSpan));
        }
        if (iOutside != 0)
            break;
    }
    return iAt;
}

inline bool OnePass::Holds(Effect const & oEffect, std::string_view sText, std::size_t iAt) const
{
    for (std::size_t i = oEffect.oAssertions.iBegin; i != oEffect.oAssertions.iEnd; ++i)
        if (!Pattern::Holds(m_vAssertions[i], sText, iAt))
            return false;
    return true;
}

inline void OnePass::Save(Effect const & oEffect, std::size_t iAt, Slots & vSlots) const
{
    for (std::size_t i = oEffect.oSlots.iBegin; i != oEffect.oSlots.iEnd; ++i)
        vSlots[m_vSlots[i]] = iAt;
}

bool OnePass::Match(std::string_view sText, Slots & vSlots, Slots & vWork) const
{
    bool bFound = false;
    vSlots.resize(m_iSlots);
    vWork.assign(m_iSlots, NOWHERE);
    Action const * const pActions = m_vActions.data();
    Effect const * const pEffects = m_vEffects.data();
    Action const * pRow = pActions;
    for (std::size_t iAt = 0;; ++iAt)
    {
        iAt = Skip(pRow, sText, iAt);
        Action const oAction =
            pRow[iAt < sText.size() ? m_aColumns[static_cast<unsigned char>(sText[iAt])] : m_iEndColumn];
        if (oAction.iMatch != 0 && Holds(pEffects[oAction.iMatch], sText, iAt))
        {
            std::copy_n(vWork.data(), m_iSlots, vSlots.data());
            Save(pEffects[oAction.iMatch], iAt, vSlots);
            bFound = true;
        }
        if (oAction.iEffect != 0)
        {
            if (oAction.iEffect == Action::DEAD || !Holds(pEffects[oAction.iEffect], sText, iAt))
                return bFound;
            Save(pEffects[oAction.iEffect], iAt, vWork);
        }
        pRow = pActions + oAction.iRow;
    }
}

} // namespace tsl::Pattern
