#pragma once

#include "Program.h"

#include <array>
#include <optional>

namespace tsl::Pattern
{

/// A table for those programs that are anchored to the beginning of the text and in which the next byte
/// always tells the only way to go. It is run in one pass, without a choice to come back to.
///
/// A row is what the program waits for behind a byte. A column is a class of bytes that no instruction
/// tells apart; the last one is the end of the text.
class OnePass
{
public:
    /// Nothing if the program is none of those, or if its table would be large.
    static std::optional<OnePass> Make(Program const & oProgram);

    /// Matches at the beginning of the text and leaves the positions in vSlots; vWork is memory for that.
    /// False if nothing matches.
    bool Match(std::string_view sText, Slots & vSlots, Slots & vWork) const;

private:
    friend class OnePassMaker;

    /// What lies on the way: assertions that must hold, and slots that take the position.
    struct Effect
    {
        std::vector<Assertion> vAssertions;
        std::vector<std::uint32_t> vSlots;
    };

    struct Action
    {
        /// The first action of the next row.
        std::uint32_t iRow = 0;

        /// Number of the effect on the way there; 0 is the one that does nothing.
        std::uint16_t iEffect = DEAD;

        /// Number of the effect on the way to a match in front of the byte, if there is one and it has to
        /// be noted: a match that the next row is sure to have, too, has not.
        std::uint16_t iMatch = 0;

        // Instead of an effect: there is no way on; nothing happens at all, and the row is the same again.
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
