#pragma once

#include "Program.h"

#include <array>
#include <optional>

namespace tsl::Pattern
{

/// The engine for programs that are anchored to the beginning of the text and in which the next byte always
/// determines the path. It runs a table in one pass and never goes back (R09).
///
/// A row is an instruction at which the program continues after a byte. A column is a class of bytes that no
/// instruction distinguishes; the last column is the end of the text.
class OnePass
{
public:
    /// No value if the program does not qualify or its table would be large.
    static std::optional<OnePass> Make(Program const & oProgram);

    /// Matches at the beginning of the text and stores the positions in vSlots. vWork is a buffer that the
    /// caller keeps for the next call. False if nothing matches.
    bool Match(std::string_view sText, Slots & vSlots, Slots & vWork) const;

private:
    friend class OnePassMaker;

    /// What happens on a path without consuming: the assertions that must hold, and the slots that get the
    /// position. They are parts of m_vAssertions and m_vSlots, so that an effect is one step away (R09).
    struct Effect
    {
        struct Part
        {
            std::uint32_t iBegin = 0;
            std::uint32_t iEnd = 0;
        };
        Part oAssertions;
        Part oSlots;
    };

    struct Action
    {
        /// The index of the first action of the next row.
        std::uint32_t iRow = 0;

        /// The effect before the byte is consumed; 0 is the one that does nothing.
        std::uint16_t iEffect = DEAD;

        /// The effect of a match that ends before the byte; 0 if there is none. Also 0 if the next row surely
        /// matches, too: that match replaces this one.
        std::uint16_t iMatch = 0;

        // In place of an effect: no path continues; the byte has no effect and the row stays the same.
        static constexpr std::uint16_t DEAD = UINT16_MAX;
        static constexpr std::uint16_t STAY = UINT16_MAX - 1;
    };

    /// The bytes with which a row stays the same, if they are all bytes from iFirst to iLast; else empty.
    struct Interval
    {
        std::uint8_t iFirst = 1;
        std::uint8_t iLast = 0;
    };

    static constexpr std::size_t BLOCK = 32;

    bool Holds(Effect const & oEffect, std::string_view sText, std::size_t iAt) const;
    void Save(Effect const & oEffect, std::size_t iAt, Slots & vSlots) const;

    std::size_t Skip(Action const * pRow, std::string_view sText, std::size_t iAt) const;
    static std::size_t SkipBlocks(Interval oInterval, std::string_view sText, std::size_t iAt);

    bool Stays(Action const * pRow, char cByte) const
    {
        return pRow[m_aColumns[static_cast<unsigned char>(cByte)]].iEffect == Action::STAY;
    }
    std::size_t GetWidth() const { return m_iEndColumn + 1; }

    std::array<std::uint8_t, 256> m_aColumns{};
    std::size_t m_iEndColumn = 0;
    std::size_t m_iSlots = 0;
    std::vector<Action> m_vActions;
    std::vector<Effect> m_vEffects{Effect()};
    std::vector<Assertion> m_vAssertions;
    std::vector<std::uint32_t> m_vSlots;

    /// One for each row.
    std::vector<Interval> m_vIntervals;
};

} // namespace tsl::Pattern
