#include <tessel/LibraryProxy.h>

#include "platform/Libraries.h"

#include <tessel/Locks.h>
#include <tessel/LogPoint.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <string>
#include <utility>

namespace tsl
{

namespace
{

String GetFileName(String const & sName)
{
    return sName + Platform::LIBRARY_ENDING;
}

void Free(void * pLibrary, String const & sName)
{
    if (!pLibrary)
        return;

    Trace("LibraryProxy", [&] { return "Unload library '" + GetFileName(sName) + "'."; });
    Platform::FreeLibrary(pLibrary);
}

} // namespace

struct TSL_HIDDEN LibraryProxy::Private
{
    explicit Private(String const & sLibrary) : sName(sLibrary) {}

    String CopyName()
    {
        ReadLock const oScope(oLock);
        return sName;
    }

    /// Returns the loaded library, or null, and its name. The caller owns it then.
    void * Take(String & sLoaded)
    {
        WriteLock const oScope(oLock);
        sLoaded = sName;
        return std::exchange(pLibrary, nullptr);
    }

    void * Keep(void * pLoaded, String const & sLoaded);

    String sName;
    void * pLibrary = nullptr;

    // Not held during loading, unloading and tracing: all of these run foreign code.
    ReaderWriterMutex oLock;
};

/// Stores the loaded library. Returns a library that the caller must free, or null: the one that another thread or
/// the library's own initialisation has stored meanwhile, or pLoaded itself if the proxy's name has changed.
void * LibraryProxy::Private::Keep(void * pLoaded, String const & sLoaded)
{
    WriteLock const oScope(oLock);
    return sName == sLoaded ? std::exchange(pLibrary, pLoaded) : pLoaded;
}

LibraryProxy::LibraryProxy() : LibraryProxy(String()) {}
LibraryProxy::LibraryProxy(String const & sName) : m(std::make_unique<Private>(sName)) {}

LibraryProxy::~LibraryProxy()
{
    Free(m->pLibrary, m->sName);
}

void LibraryProxy::SetName(String const & sName)
{
    String sFormer(sName);
    void * pFormer = nullptr;
    {
        WriteLock const oScope(m->oLock);
        std::swap(m->sName, sFormer);
        pFormer = std::exchange(m->pLibrary, nullptr);
    }
    Free(pFormer, sFormer);
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
    Unload();

    String const sName = m->CopyName();
    String const sFile = GetFileName(sName);
    Trace("LibraryProxy", [&] { return "Load library '" + sFile + "'."; });
    std::string sReason;
    void * const pLoaded = Platform::LoadLibrary(sFile.c_str(), sReason);
    if (!pLoaded)
        return MakeResult(ERR::eNotFound, "Could not load library '" + sFile + "'.",
            Result(ERR::eSubsystem, String(sReason), Result::eCategoryDefault));

    if (void * const pFormer = m->Keep(pLoaded, sName))
        Platform::FreeLibrary(pFormer);
    return Result();
}

void LibraryProxy::Unload()
{
    String sName;
    void * const pLibrary = m->Take(sName);
    Free(pLibrary, sName);
}

} // namespace tsl
