#include <tessel/LibraryProxy.h>

#include "Platform.h"

#include <tessel/Locks.h>
#include <tessel/LogPoint.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <utility>

namespace tsl
{

struct TSL_HIDDEN LibraryProxy::Private
{
    explicit Private(String const & sLibrary) : sName(sLibrary) {}

    String GetFileName() const { return sName + Platform::LIBRARY_ENDING; }

    Result Load()
    {
        Unload();
        String const sFile = GetFileName();
        Trace("LibraryProxy", [&] { return "Load library '" + sFile + "'."; });
        void * const pLoaded = Platform::LoadLibrary(sFile.c_str());
        if (!pLoaded)
            return MakeResult(ERR::eNotFound, "Could not load library '" + sFile + "'.");

        // The library's own initialisation may have loaded it here as well.
        if (void * const pFormer = std::exchange(pLibrary, pLoaded))
            Platform::FreeLibrary(pFormer);
        return Result();
    }

    void Unload()
    {
        if (!pLibrary)
            return;

        Trace("LibraryProxy", [&] { return "Unload library '" + GetFileName() + "'."; });
        Platform::FreeLibrary(std::exchange(pLibrary, nullptr));
    }

    String sName;
    void * pLibrary = nullptr;
    ReaderWriterMutex oLock;
};

LibraryProxy::LibraryProxy() : LibraryProxy(String()) {}
LibraryProxy::LibraryProxy(String const & sName) : m(std::make_unique<Private>(sName)) {}

LibraryProxy::~LibraryProxy()
{
    m->Unload();
}

void LibraryProxy::SetName(String const & sName)
{
    WriteLock const oScope(m->oLock);
    m->Unload();
    m->sName = sName;
}

String const & LibraryProxy::GetName() const
{
    ReadLock const oScope(m->oLock);
    return m->sName;
}

bool LibraryProxy::IsLoaded() const
{
    ReadLock const oScope(m->oLock);
    return m->pLibrary != nullptr;
}

Result LibraryProxy::Load()
{
    WriteLock const oScope(m->oLock);
    return m->Load();
}

void LibraryProxy::Unload()
{
    WriteLock const oScope(m->oLock);
    m->Unload();
}

} // namespace tsl
