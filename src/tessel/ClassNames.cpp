#include "ClassNames.h"

#include <functional>

namespace tsl
{

namespace
{

constexpr std::size_t SLOTS_AT_FIRST = 256;

Root * MakeNothing()
{
    return nullptr;
}

} // namespace

ClassNames::Name::Name(std::string_view sTheName) : sName(sTheName), fFactory(MakeNothing) {}

void ClassNames::Name::Publish()
{
    fFactory.store(
        vClasses.empty() ? MakeNothing : vClasses.front()->GetFactoryFunction(), std::memory_order_release);
}

ClassNames::ClassNames() : m_pTable(&m_oTables.emplace_back(SLOTS_AT_FIRST)) {}

void ClassNames::Add(ClassDescription const & oClass)
{
    Name * const pKnown = FindSlot(*m_pTable, oClass.GetClassName());
    Name & oName = pKnown ? *pKnown : AddName(oClass.GetClassName());
    oName.vClasses.push_back(&oClass);
    oName.Publish();
}

void ClassNames::Remove(ClassDescription const & oClass)
{
    Name * const pName = FindSlot(*m_pTable, oClass.GetClassName());
    if (!pName)
        return;

    std::erase_if(pName->vClasses, [&](auto * pClass) { return *pClass == oClass; });
    pName->Publish();
}

ClassDescription::FactoryFunction ClassNames::FindFactory(std::string_view sName) const
{
    Name const * const pName = FindSlot(*m_pTable.load(std::memory_order_acquire), sName);
    return pName ? pName->fFactory.load(std::memory_order_acquire) : MakeNothing;
}

/// The slot that has the name, or the empty one where it belongs.
ClassNames::Slot & ClassNames::FindSlot(Table & oTable, std::string_view sName)
{
    for (std::size_t i = std::hash<std::string_view>()(sName);; ++i)
    {
        Slot & oSlot = oTable[i & (oTable.size() - 1)];
        Name const * const pName = oSlot.load(std::memory_order_acquire);
        if (!pName || pName->sName == sName)
            return oSlot;
    }
}

ClassNames::Name & ClassNames::AddName(std::string_view sName)
{
    if (m_oNames.size() >= m_pTable.load()->size() / 2)
        Grow();
    Name & oName = m_oNames.emplace_back(sName);
    FindSlot(*m_pTable, sName).store(&oName, std::memory_order_release);
    return oName;
}

void ClassNames::Grow()
{
    Table & oTable = m_oTables.emplace_back(2 * m_pTable.load()->size());
    for (Name & oName : m_oNames)
        FindSlot(oTable, oName.sName).store(&oName, std::memory_order_relaxed);
    m_pTable.store(&oTable, std::memory_order_release);
}

} // namespace tsl
