#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tsl
{

/// The keys of a chapter with their values, found by name. It needs little more room than the texts, which
/// lie in one block. What is returned as a view holds until the next change.
class IniKeyTable
{
public:
    /// Makes room for as many keys and as much text as the other table holds. This one has to be empty.
    void ReserveLike(IniKeyTable const & oOther);

    /// False if there is a key of that name.
    bool Add(std::string_view sName, std::string_view sValue);

    /// Appends to the value of the key that was added last.
    void ExtendValue(std::string_view sMore);

    std::optional<std::string_view> FindValue(std::string_view sName) const;

    /// In no particular order.
    std::vector<std::string_view> GetNames() const;

private:
    static constexpr std::size_t NOWHERE = static_cast<std::size_t>(-1);

    /// A place for one key.
    struct Slot
    {
        std::size_t iText = NOWHERE; ///< where the name and behind it the value begin, if there is a key
        std::size_t iValueLength = 0;
        std::uint32_t iNameLength = 0;
        std::uint32_t iHash = 0;

        bool IsFree() const { return iText == NOWHERE; }
    };

    std::size_t FindSlot(std::string_view sName, std::uint32_t iHash) const;
    bool IsKey(Slot const & oSlot, std::string_view sName, std::uint32_t iHash) const;
    void Resize(std::size_t iSize);
    std::string_view GetName(Slot const & oSlot) const;
    std::string_view GetValue(Slot const & oSlot) const;

    std::string m_sTexts;
    std::vector<Slot> m_vSlots; // a hash table, whose size is a power of two; some slots are always free
    std::size_t m_iCount = 0;
    std::size_t m_iNewest = 0;
};

} // namespace tsl
