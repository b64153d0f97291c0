#pragma once

/// Implementation details of the public templates, not for programs. The name does not collide with a
/// program's namespace, even after `using namespace tsl`.
namespace tsl::TesselDetails
{

/// Locks a mutex for reading until the end of the scope:
///
///     TesselDetails::ReadLock const oScope(m_oLock);
///
/// Mutex is CriticalSectionMutex, ReaderWriterMutex or DummyMutex. It must outlive the scope.
template<class Mutex>
class ReadLock
{
public:
    explicit ReadLock(Mutex & oMutex) : m_oMutex(oMutex) { m_oMutex.LockRead(); }
    ~ReadLock() { m_oMutex.UnlockRead(); }
    ReadLock(ReadLock const &) = delete;
    ReadLock & operator=(ReadLock const &) = delete;

private:
    Mutex & m_oMutex;
};

/// Locks a mutex for writing until the end of the scope. The same rules as for ReadLock.
template<class Mutex>
class WriteLock
{
public:
    explicit WriteLock(Mutex & oMutex) : m_oMutex(oMutex) { m_oMutex.LockWrite(); }
    ~WriteLock() { m_oMutex.UnlockWrite(); }
    WriteLock(WriteLock const &) = delete;
    WriteLock & operator=(WriteLock const &) = delete;

private:
    Mutex & m_oMutex;
};

} // namespace tsl::TesselDetails
