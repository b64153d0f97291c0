#pragma once

#include "Program.h"

#include <array>
#include <optional>

namespace tsl::Pattern
{

/// The engine for programs that are anchored to the beginning of the text and in which the next byte always
/// determines the path. It runs a table in one pass and never goes back (R08, R09).
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

    /// What happens on a path without consuming: assertions that must hold, and slots that get the position.
    struct Effect
    {
        std::vector<Assertion> vAssertions;
        std::vector<std::uint32_t> vSlots;
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

    std::array<std::uint8_t, 256> m_aColumns{};
    std::size_t m_iEndColumn = 0;
    std::size_t m_iSlots = 0;
    std::vector<Action> m_vActions;
    std::vector<Effect> m_vEffects{Effect()};
};

} // namespace tsl::Pattern
