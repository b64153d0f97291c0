#pragma once

/// What public templates need and programs do not. The name keeps it apart from namespaces of a program, also
/// of one that is `using namespace tsl`.
namespace tsl::TesselDetails
{

/// Holds a mutex for reading until the end of the scope, whichever way it is left.
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

/// Holds a mutex for writing until the end of the scope, whichever way it is left.
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
