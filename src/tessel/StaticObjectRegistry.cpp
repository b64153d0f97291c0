#include <tessel/StaticObjectRegistry.h>

#include <tessel/ClassRepository.h>
#include <tessel/Locks.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <iterator>
#include <list>
#include <set>

namespace tsl
{

StaticObjectPtrBase::~StaticObjectPtrBase() = default;

struct TSL_HIDDEN StaticObjectRegistry::Private
{
    struct Entry
    {
        std::unique_ptr<StaticObjectPtrBase> pHandle;
        bool bLasting;
    };

    Entry TakeNext();

    std::set<void *> oObjects;
    std::list<Entry> oEntries;
    ReaderWriterMutex oLock;
};

StaticObjectRegistry & StaticObjectRegistry::Instance()
{
    static StaticObjectRegistry oRegistry;
    return oRegistry;
}

StaticObjectRegistry::StaticObjectRegistry() : m(std::make_unique<Private>()) {}

StaticObjectRegistry::~StaticObjectRegistry()
{
    // No lock, and each handle leaves before its object ends: the object's destructor may register
    // further objects, which this loop then meets, and their addresses may be the one just freed.
    while (!m->oEntries.empty())
        m->TakeNext().pHandle->DeleteObject();
}

/// The newest object that does not last, or else the newest one.
StaticObjectRegistry::Private::Entry StaticObjectRegistry::Private::TakeNext()
{
    auto const oNewest = std::find_if(
        oEntries.rbegin(), oEntries.rend(), [](Entry const & oEntry) { return !oEntry.bLasting; });
    auto const oPlace = std::prev(oNewest == oEntries.rend() ? oEntries.end() : oNewest.base());

    Entry oEntry = std::move(*oPlace);
    oEntries.erase(oPlace);
    oObjects.erase(oEntry.pHandle->GetObject());
    return oEntry;
}

StaticObjectPtrBase const & StaticObjectRegistry::RegisterStaticObject(StaticObjectPtrBase const & oHandle)
{
    return Register(oHandle, false);
}

StaticObjectPtrBase const & StaticObjectRegistry::RegisterLastingObject(StaticObjectPtrBase const & oHandle)
{
    return Register(oHandle, true);
}

StaticObjectPtrBase const & StaticObjectRegistry::Register(StaticObjectPtrBase const & oHandle, bool bLasting)
{
    std::unique_ptr<StaticObjectPtrBase> pHandle(oHandle.Clone());

    WriteLock const oScope(m->oLock);
    if (!m->oObjects.insert(pHandle->GetObject()).second)
    {
        String sText("StaticObjectRegistry::RegisterStaticObject : Objekt bereits registriert! Obj: ");
        DumpObject(*pHandle, sText);
        XAssertionFailed("false", sText);
    }

    m->oEntries.push_back({std::move(pHandle), bLasting});
    return *m->oEntries.back().pHandle;
}

/// Whether a new singleton object meets an earlier one of its type.
static bool Matches(StaticObjectPtrBase const & oNew, StaticObjectPtrBase const & oEntry)
{
    ClassDescription const * const pDescription = oNew.GetDescription();
    if (!pDescription)
        return std::strcmp(oNew.GetTypeName(), oEntry.GetTypeName()) == 0;

    ClassDescription const * const pEntryDescription = oEntry.GetDescription();
    return pEntryDescription && pDescription->GetClassId() != 0 && pEntryDescription->GetClassId() != 0;
}

StaticObjectPtrBase const & StaticObjectRegistry::RegisterSingletonObject(StaticObjectPtrBase & oHandle)
{
    StaticObjectPtrBase const * pNext = nullptr;
    bool bFound = false;
    {
        ReadLock const oScope(m->oLock);
        auto oEntry = m->oEntries.begin();
        while (oEntry != m->oEntries.end() && !bFound)
        {
            bFound = Matches(oHandle, *oEntry->pHandle);
            ++oEntry;
        }
        if (oEntry != m->oEntries.end())
            pNext = oEntry->pHandle.get();
    }

    if (!bFound)
        return RegisterStaticObject(oHandle);

    oHandle.DeleteObject();
    if (!pNext)
        XAssertionFailed(
            "pNext", "StaticObjectRegistry::RegisterSingletonObject : Kein weiteres Objekt registriert!");
    return *pNext;
}

void StaticObjectRegistry::Dump() const
{
    ReadLock const oScope(m->oLock);
    String sText("StaticObjectRegistry::Dump RegisteredObjectList : \n");
    for (Private::Entry const & oEntry : m->oEntries)
    {
        sText << "Object = ";
        DumpObject(*oEntry.pHandle, sText);
        sText << '\n';
    }
    sText << "StaticObjectRegistry::Dump End";
    std::cout << sText.s_str() << std::endl;
}

void StaticObjectRegistry::DumpObject(StaticObjectPtrBase const & oHandle, String & sText) const
{
    sText << oHandle.GetTypeName();
    if (ClassDescription const * const pDescription = oHandle.GetDescription())
        sText << ", description of " << pDescription->GetClassName();
}

} // namespace tsl
