#include <tessel/StaticObjectRegistry.h>

#include "OwnMutex.h"
#include "platform/Libraries.h"

#include <tessel/ClassRepository.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iostream>
#include <iterator>
#include <list>
#include <new>
#include <set>

namespace tsl
{

StaticObjectPtrBase::~StaticObjectPtrBase() = default;

struct TSL_HIDDEN StaticObjectRegistry::Private
{
    enum class Life
    {
        eUsual,
        eOfLibrary, ///< made while the library was loaded
        eLasting
    };

    /// Caches what the handle returns. The handle must not be called under the lock: its class may be the
    /// program's.
    struct Entry
    {
        explicit Entry(StaticObjectPtrBase const & oHandle, Life eTheLife)
            : pHandle(oHandle.Clone()),
              pObject(pHandle->GetObject()),
              sTypeName(pHandle->GetTypeName()),
              pDescription(pHandle->GetDescription()),
              eLife(eTheLife)
        {
        }

        void AppendTo(String & sText) const
        {
            sText << sTypeName;
            if (pDescription)
                sText << ", description of " << pDescription->GetClassName();
        }

        std::unique_ptr<StaticObjectPtrBase> pHandle;
        void * pObject;
        char const * sTypeName;
        ClassDescription const * pDescription;
        Life eLife;
    };

    bool TakeNext(std::list<Entry> & oTaken);
    StaticObjectPtrBase const * Insert(std::list<Entry> & oNew);
    void DeleteObjects();

    std::set<void *> oObjects;
    std::list<Entry> oEntries;
    OwnMutex oLock;
};

/// Its destructor, at the end of the process or when the library is unloaded, deletes the registered objects.
struct TSL_HIDDEN StaticObjectRegistry::End
{
    ~End();

    StaticObjectRegistry & oRegistry;
};

StaticObjectRegistry & StaticObjectRegistry::Instance()
{
    // In a buffer, since at the end of the process the registry must not be destroyed: other threads may use
    // it.
    alignas(StaticObjectRegistry) static std::byte aMemory[sizeof(StaticObjectRegistry)];
    static StaticObjectRegistry & oRegistry = *new (aMemory) StaticObjectRegistry;
    static End const oEnd{oRegistry};
    return oRegistry;
}

StaticObjectRegistry::StaticObjectRegistry() : m(std::make_unique<Private>()) {}
StaticObjectRegistry::~StaticObjectRegistry() = default;

StaticObjectRegistry::End::~End()
{
    oRegistry.m->DeleteObjects();
    if (Platform::IsUnloading())
        oRegistry.~StaticObjectRegistry();
}

void StaticObjectRegistry::Private::DeleteObjects()
{
    // Objects are deleted without the lock, after their entry is removed: a destructor may register further
    // objects, which this loop then deletes, and their addresses may be the one just freed.
    for (std::list<Entry> oTaken; TakeNext(oTaken); oTaken.clear())
        oTaken.front().pHandle->DeleteObject();
}

/// Takes out the entry of the next object to delete: the newest one that is not lasting, else the newest one.
/// False if there is none. At the end of the process lasting objects and the library's own stay, since other
/// threads may use them.
bool StaticObjectRegistry::Private::TakeNext(std::list<Entry> & oTaken)
{
    bool const bAll = Platform::IsUnloading();
    WriteLock const oScope(oLock);
    auto oNewest = std::find_if(oEntries.rbegin(), oEntries.rend(),
        [bAll](Entry const & oEntry)
        { return oEntry.eLife == Life::eUsual || (bAll && oEntry.eLife == Life::eOfLibrary); });
    if (oNewest == oEntries.rend() && bAll)
        oNewest = oEntries.rbegin();
    if (oNewest == oEntries.rend())
        return false;

    oObjects.erase(oNewest->pObject);
    oTaken.splice(oTaken.begin(), oEntries, std::prev(oNewest.base()));
    return true;
}

/// Adds the entry. Returns its handle, or null if the object is already registered.
StaticObjectPtrBase const * StaticObjectRegistry::Private::Insert(std::list<Entry> & oNew)
{
    WriteLock const oScope(oLock);
    if (!oObjects.insert(oNew.front().pObject).second)
        return nullptr;

    oEntries.splice(oEntries.end(), oNew);
    return oEntries.back().pHandle.get();
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
    std::list<Private::Entry> oNew;
    Private::Entry const & oEntry =
        oNew.emplace_back(oHandle, bLasting ? Private::Life::eLasting : Private::Life::eUsual);
    StaticObjectPtrBase const * const pHandle = m->Insert(oNew);
    if (!pHandle)
    {
        String sText("StaticObjectRegistry::RegisterStaticObject : Objekt bereits registriert! Obj: ");
        oEntry.AppendTo(sText);
        XAssertionFailed("false", sText);
    }
    return *pHandle;
}

void StaticObjectRegistry::KeepPresentObjects()
{
    WriteLock const oScope(m->oLock);
    for (Private::Entry & oEntry : m->oEntries)
        if (oEntry.eLife == Private::Life::eUsual)
            oEntry.eLife = Private::Life::eOfLibrary;
}

StaticObjectPtrBase const & StaticObjectRegistry::RegisterSingletonObject(StaticObjectPtrBase & oHandle)
{
    char const * const sTypeName = oHandle.GetTypeName();
    ClassDescription const * const pDescription = oHandle.GetDescription();
    auto const fMatches = [&](Private::Entry const & oEntry)
    {
        if (!pDescription)
            return std::strcmp(sTypeName, oEntry.sTypeName) == 0;
        return oEntry.pDescription && pDescription->GetClassId() != 0
               && oEntry.pDescription->GetClassId() != 0;
    };

    StaticObjectPtrBase const * pNext = nullptr;
    bool bFound = false;
    {
        ReadLock const oScope(m->oLock);
        auto const oMatch = std::find_if(m->oEntries.begin(), m->oEntries.end(), fMatches);
        bFound = oMatch != m->oEntries.end();
        if (bFound && std::next(oMatch) != m->oEntries.end())
            pNext = std::next(oMatch)->pHandle.get();
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
    String sText("StaticObjectRegistry::Dump RegisteredObjectList : \n");
    {
        ReadLock const oScope(m->oLock);
        for (Private::Entry const & oEntry : m->oEntries)
        {
            sText << "Object = ";
            oEntry.AppendTo(sText);
            sText << '\n';
        }
    }
    sText << "StaticObjectRegistry::Dump End";
    std::cout << sText.s_str() << std::endl;
}

} // namespace tsl
