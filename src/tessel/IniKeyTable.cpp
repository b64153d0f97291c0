#include "IniKeyTable.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace tsl
{

static constexpr std::size_t SIZE_FIRST = 8;

static std::uint32_t GetHash(std::string_view sName)
{
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(sName));
}

void IniKeyTable::ReserveLike(IniKeyTable const & oOther)
{
    m_sTexts.reserve(oOther.m_sTexts.size());
    Resize(std::bit_ceil(oOther.m_iCount * 4 / 3));
}

bool IniKeyTable::Add(std::string_view sName, std::string_view sValue)
{
    // A quarter of the slots stays free, so that a probe sequence is short.
    if ((m_iCount + 1) * 4 > m_vSlots.size() * 3)
        Resize(std::max(m_vSlots.size() * 2, SIZE_FIRST));

    std::uint32_t const iHash = GetHash(sName);
    std::size_t const iSlot = FindSlot(sName, iHash);
    if (!m_vSlots[iSlot].IsFree())
        return false;

    m_vSlots[iSlot] = {m_sTexts.size(), sValue.size(), static_cast<std::uint32_t>(sName.size()), iHash};
    m_sTexts += sName;
    m_sTexts += sValue;
    m_iNewest = iSlot;
    ++m_iCount;
    return true;
}

void IniKeyTable::ExtendValue(std::string_view sMore)
{
    // The value of the newest key is at the end of the texts.
    m_sTexts += sMore;
    m_vSlots[m_iNewest].iValueLength += sMore.size();
}

std::optional<std::string_view> IniKeyTable::FindValue(std::string_view sName) const
{
    if (m_iCount == 0)
        return std::nullopt;

    Slot const & oSlot = m_vSlots[FindSlot(sName, GetHash(sName))];
    if (oSlot.IsFree())
        return std::nullopt;
    return GetValue(oSlot);
}

std::vector<std::string_view> IniKeyTable::GetNames() const
{
    std::vector<std::string_view> vNames;
    for (Slot const & oSlot : m_vSlots)
        if (!oSlot.IsFree())
            vNames.push_back(GetName(oSlot));
    return vNames;
}

/// The slot of the key, or the free slot where it has to be added.
std::size_t IniKeyTable::FindSlot(std::string_view sName, std::uint32_t iHash) const
{
    std::size_t const iMask = m_vSlots.size() - 1;
    std::size_t iSlot = iHash & iMask;
    while (!m_vSlots[iSlot].IsFree() && !IsKey(m_vSlots[iSlot], sName, iHash))
        iSlot = (iSlot + 1) & iMask;
    return iSlot;
}

bool IniKeyTable::IsKey(Slot const & oSlot, std::string_view sName, std::uint32_t iHash) const
{
    return oSlot.iHash == iHash && GetName(oSlot) == sName;
}

void IniKeyTable::Resize(std::size_t iSize)
{
    std::vector<Slot> vFormer(iSize);
    vFormer.swap(m_vSlots);

    std::size_t const iMask = m_vSlots.size() - 1;
    for (Slot const & oSlot : vFormer)
    {
        if (oSlot.IsFree())
            continue;

        std::size_t i = oSlot.iHash & iMask;
        while (!m_vSlots[i].IsFree())
            i = (i + 1) & iMask;
        m_vSlots[i] = oSlot;
    }
}

std::string_view IniKeyTable::GetName(Slot const & oSlot) const
{
    return {m_sTexts.data() + oSlot.iText, oSlot.iNameLength};
}

std::string_view IniKeyTable::GetValue(Slot const & oSlot) const
{
    return {m_sTexts.data() + oSlot.iText + oSlot.iNameLength, oSlot.iValueLength};
}

} // namespace tsl
