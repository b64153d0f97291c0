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

/// The interface of a queue between threads: first in, first out. Send queues a copy, so the sender keeps its item
/// and the receiver owns what it gets:
///
///     tsl::PipeDebMessage oPipe("Worker");
///     oPipe.Send(Alarm("Hot"));                                 // on one thread
///     std::unique_ptr<tsl::Message> pMessage(oPipe.Receive());  // on another one; null if there is none
///
/// Any thread may call any operation. None waits for an item or for space: the length has no limit, so a queue that
/// nobody reads grows without end. Send and Receive take constant time.
template<class T>
class TSL_EXPORT_TEMPLATE Pipe
{
public:
    Pipe() = default;
    Pipe(Pipe const &) = delete;
    Pipe & operator=(Pipe const &) = delete;
    virtual ~Pipe() = default;

    /// Deletes all items. If their destructors send to the pipe, it deletes these items, too.
    virtual void Clear() = 0;

    /// Another thread may change the answer before the caller uses it.
    virtual bool IsEmpty() const = 0;

    /// Appends a copy of the item. If copying throws, the caller gets the exception and nothing is queued.
    virtual void Send(T const & oItem) = 0;

    /// Removes the first item and returns it; the caller deletes it. Returns null at once if there is none.
    virtual T * Receive() = 0;
};

/// Copies an item with its copy constructor. The copy is on the heap; the caller deletes it.
template<class T>
class TSL_EXPORT_TEMPLATE CloneByCopyConstructor
{
public:
    /// What the copy constructor throws reaches the caller.
    static T * Clone(T const & oItem) { return new T(oItem); }
};

/// Copies an item that derives from Root; the copy has the item's dynamic class. It is on the heap; the caller
/// deletes it.
template<class T>
class TSL_EXPORT_TEMPLATE CloneByGetCopy
{
public:
    /// See Root::GetCopy.
    static T * Clone(T const & oItem) { return static_cast<T *>(oItem.GetCopy()); }
};

/// A pipe as a queue with a lock, which every operation holds until it returns, also while it copies.
///
///     tsl::DefaultPipe<tsl::String, tsl::CriticalSectionMutex, tsl::CloneByCopyConstructor<tsl::String>> oLines;
///
/// @tparam Mutex has LockRead, LockWrite, UnlockRead and UnlockWrite
/// @tparam ClonePolicy has a static Clone, which returns a copy of an item on the heap
template<class T, class Mutex, class ClonePolicy>
class TSL_EXPORT_TEMPLATE DefaultPipe : public Pipe<T>
{
public:
    /// Makes an empty pipe. The destructor deletes the items that are left.
    DefaultPipe() = default;
    ~DefaultPipe() override { DefaultPipe::Clear(); }

    /// See Pipe.
    void Clear() override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        while (!m_oQueue.empty())
            Private::TakeFirst(m_oQueue);
    }

    /// See Pipe.
    bool IsEmpty() const override
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return m_oQueue.empty();
    }

    /// See Pipe.
    void Send(T const & oItem) override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        m_oQueue.push_back(std::unique_ptr<T>(ClonePolicy::Clone(oItem)));
    }

    /// See Pipe.
    T * Receive() override
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        return m_oQueue.empty() ? nullptr : Private::TakeFirst(m_oQueue).release();
    }

    /// The number of queued items at this moment.
    unsigned int GetSize() const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return static_cast<unsigned int>(m_oQueue.size());
    }

private:
    struct Private
    {
        // The item is removed before it is deleted, so its destructor may use the pipe.
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

TSL_EXTERN_TEMPLATE(class DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>);
TSL_EXTERN_TEMPLATE(class DefaultPipe<Message, CriticalSectionMutex, CloneByGetCopy<Message>>);

/// A pipe of messages that traces each operation with its name, by the log point "Pipe". The lock is not held while
/// a trace is written, so the size in it may be out of date.
class TSL_EXPORT PipeDebMessage : public DefaultPipe<Message, CriticalSectionMutex, CloneByGetCopy<Message>>
{
public:
    /// The name, which is copied, begins each trace.
    explicit PipeDebMessage(String const & sName);

    void Clear() override;
    void Send(Message const & oMessage) override;
    Message * Receive() override;

private:
    String m_sName;
};

} // namespace tsl
