#include <tessel/StaticObjectRegistry.h>

#include <tessel/ClassRepository.h>
#include <tessel/Locks.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <cstring>
#include <iostream>
#include <list>
#include <set>

namespace tsl
{

StaticObjectPtrBase::~StaticObjectPtrBase() = default;

struct TSL_HIDDEN StaticObjectRegistry::Private
{
    std::set<void *> oObjects;
    std::list<std::unique_ptr<StaticObjectPtrBase>> oHandles;
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
    while (!m->oHandles.empty())
    {
        std::unique_ptr<StaticObjectPtrBase> const pHandle = std::move(m->oHandles.back());
        m->oHandles.pop_back();
        m->oObjects.erase(pHandle->GetObject());
        pHandle->DeleteObject();
    }
}

StaticObjectPtrBase const & StaticObjectRegistry::RegisterStaticObject(StaticObjectPtrBase const & oHandle)
{
    std::unique_ptr<StaticObjectPtrBase> pHandle(oHandle.Clone());

    WriteLock const oScope(m->oLock);
    if (!m->oObjects.insert(pHandle->GetObject()).second)
    {
        String sText("StaticObjectRegistry::RegisterStaticObject : Objekt bereits registriert! Obj: ");
        DumpObject(*pHandle, sText);
        XAssertionFailed("false", sText);
    }

    m->oHandles.push_back(std::move(pHandle));
    return *m->oHandles.back();
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
        auto oEntry = m->oHandles.begin();
        while (oEntry != m->oHandles.end() && !bFound)
        {
            bFound = Matches(oHandle, **oEntry);
            ++oEntry;
        }
        if (oEntry != m->oHandles.end())
            pNext = oEntry->get();
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
    for (auto const & pHandle : m->oHandles)
    {
        sText << "Object = ";
        DumpObject(*pHandle, sText);
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
