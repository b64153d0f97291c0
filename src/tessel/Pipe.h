#pragma once

#include <tessel/Export.h>
#include <tessel/Locks.h>
#include <tessel/Message.h>
#include <tessel/ScopedLockTemplate.h>
#include <tessel/String.h>

#include <deque>
#include <memory>
#include <utility>

namespace tsl
{

/// A queue between threads: first in, first out. Every item is copied on its way in, so the sender keeps
/// its own and the reader owns what it takes.
///
/// Any thread may call any operation. None waits, neither for an item nor for space: there is no limit on
/// the length, and a queue that nobody reads grows without bound. To send or to receive an item takes the same
/// time whatever the length.
template<class T>
class TSL_EXPORT Pipe
{
public:
    Pipe() = default;
    Pipe(Pipe const &) = delete;
    Pipe & operator=(Pipe const &) = delete;
    virtual ~Pipe() = default;

    /// Deletes all items.
    virtual void Clear() = 0;

    virtual bool IsEmpty() const = 0;

    /// Puts a copy of the item at the end. What the copying throws passes through; nothing is queued then.
    virtual void Send(T const & oItem) = 0;

    /// Takes the first item, which the caller deletes, or gives null at once if there is none.
    virtual T * Receive() = 0;
};

/// Copies an item by its copy constructor.
template<class T>
class TSL_EXPORT CloneByCopyConstructor
{
public:
    static T * Clone(T const & oItem) { return new T(oItem); }
};

/// Copies an item that derives from Root with its dynamic class.
template<class T>
class TSL_EXPORT CloneByGetCopy
{
public:
    static T * Clone(T const & oItem) { return static_cast<T *>(oItem.GetCopy()); }
};

/// The pipe: a queue and a lock, which every operation holds to its end, the copying included.
///
/// @tparam Mutex has LockRead, LockWrite, UnlockRead and UnlockWrite
/// @tparam ClonePolicy has a static Clone, which makes a copy of an item on the heap
template<class T, class Mutex, class ClonePolicy>
class TSL_EXPORT DefaultPipe : public Pipe<T>
{
public:
    DefaultPipe() = default;
    ~DefaultPipe() override { DefaultPipe::Clear(); }

    void Clear() override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        while (!m_oQueue.empty())
            Private::TakeFirst(m_oQueue);
    }

    bool IsEmpty() const override
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return m_oQueue.empty();
    }

    void Send(T const & oItem) override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        m_oQueue.push_back(std::unique_ptr<T>(ClonePolicy::Clone(oItem)));
    }

    T * Receive() override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        return m_oQueue.empty() ? nullptr : Private::TakeFirst(m_oQueue).release();
    }

    /// Number of queued items.
    unsigned int GetSize() const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return static_cast<unsigned int>(m_oQueue.size());
    }

private:
    struct Private
    {
        // An item has left the queue before it is deleted, so its destructor may use the pipe.
        static std::unique_ptr<T> TakeFirst(std::deque<std::unique_ptr<T>> & oQueue)
        {
            std::unique_ptr<T> pItem = std::move(oQueue.front());
            oQueue.pop_front();
            return pItem;
        }
    };

    std::deque<std::unique_ptr<T>> m_oQueue;
    mutable Mutex m_oLock;
};

extern template class DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;
extern template class DefaultPipe<Message, CriticalSectionMutex, CloneByGetCopy<Message>>;

/// A pipe of messages with a name, which has a log point "Pipe" for each operation. The pipe's lock is not
/// held while a line is written, so the size in it may be out of date.
class TSL_EXPORT PipeDebMessage : public DefaultPipe<Message, CriticalSectionMutex, CloneByGetCopy<Message>>
{
public:
    explicit PipeDebMessage(String const & sName);

    void Clear() override;
    void Send(Message const & oMessage) override;
    Message * Receive() override;

private:
    String m_sName;
};

} // namespace tsl
