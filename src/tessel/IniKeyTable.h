#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tsl
{

/// The keys of a chapter with their values: a hash table with all texts in one block of memory (R07). Views
/// that it returns are valid until the next change.
class IniKeyTable
{
public:
    /// Allocates memory for as many keys and as much text as the other table has. This one must be empty.
    void ReserveLike(IniKeyTable const & oOther);

    /// Adds a key. False if there is already one with that name.
    bool Add(std::string_view sName, std::string_view sValue);

    /// Appends to the value of the key that was added last. There must be one.
    void ExtendValue(std::string_view sMore);

    /// The value of a key; no value if there is no such key.
    std::optional<std::string_view> FindValue(std::string_view sName) const;

    /// The names of all keys, in no particular order.
    std::vector<std::string_view> GetNames() const;

private:
    static constexpr std::size_t NOWHERE = static_cast<std::size_t>(-1);

    /// A slot of the hash table.
    struct Slot
    {
        std::size_t iText = NOWHERE; ///< of the name, which the value follows; NOWHERE if the slot is free
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
    std::vector<Slot> m_vSlots; // the size is a power of two; some slots are always free
    std::size_t m_iCount = 0;
    std::size_t m_iNewest = 0;
};

} // namespace tsl
