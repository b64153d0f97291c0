#pragma once

#include <tessel/Export.h>
#include <tessel/MessageProcessor.h>

#include <memory>
#include <vector>

namespace tsl
{

/// The configuration of a bus. Copying through Root::Set copies nothing; assignment copies the types.
class TSL_EXPORT MessageDispatcherConfig : public MessageProcessorConfig
{
public:
    MessageDispatcherConfig() = default;

    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

protected:
    void DoCopy(Root const &) override {}
};

/// A bus: hands each message to the processors registered for its exact type and then to those
/// registered for Message, within a list in the order of their addresses.
///
/// Delivery runs on the caller's thread. Any thread may register, unregister and dispatch. The list that
/// is being delivered to is locked, so messages of one type pass one after the other; the same thread may
/// dispatch further messages, register and unregister from inside a delivery (ObserverNotify tells how
/// the walk then goes on).
///
/// Processors are not owned. One that is registered when the bus goes away is told by its
/// HandlerDestruction, once for each list, so a processor that ends before its bus has to be unregistered
/// first. Since a list is held across a delivery, two processors of different types that each dispatch the
/// other's type must not do so on two threads at once.
class TSL_EXPORT MessageDispatcher : public MessageProcessor
{
public:
    MessageDispatcher();

    /// Copies are the same bus; it goes away with the last of them.
    MessageDispatcher(MessageDispatcher const & oSource);
    MessageDispatcher & operator=(MessageDispatcher const & oSource);

    ClassDescription const & GetClassDesc() const override;
    ~MessageDispatcher() override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    /// Registers the processor for message types, once for each. Code 2 at the first type that is not the
    /// class id of a message class; the types before it stay registered.
    [[nodiscard]] Result Register(
        MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);

    /// What is not registered is not looked at.
    void Unregister(MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor);

    /// Delivers a message. oResult is not cleared; an Exception that a processor throws ends the delivery
    /// to its list, and its Result is put in front. Any other exception passes through.
    ///
    /// A message class must derive from Message directly. One that stands further below is delivered to
    /// its exact type and to its direct base, and a failure of code 6 and category 2 that names the class
    /// is put in front.
    void Process(Message const & oMessage, Result & oResult) const override;

    MessageProcessorConfig const & GetConfig() const override;

    /// Checks the class and takes nothing over. Anything but a MessageDispatcherConfig is an assertion
    /// failure.
    [[nodiscard]] Result SetConfig(MessageProcessorConfig const & oConfig) override;

    /// A bus works as soon as it is made.
    [[nodiscard]] Result Open() override;
    void Close() override {}

protected:
    /// Not supported: an assertion failure.
    void DoCopy(Root const & oSource) override;

    /// Appends the types that the processor is registered for, in ascending order.
    void GetRegistrations(MessageProcessor const & oProcessor, std::vector<unsigned int> & vTypes) const;

private:
    void Deliver(unsigned int iType, Message const & oMessage, Result & oResult) const;

    struct Private;
    std::shared_ptr<Private> m;
};

/// The configuration of a MessageDispatcherClient. Its registered base is MessageProcessor.
class TSL_EXPORT MessageDispatcherClientConfig : public MessageProcessorConfig
{
public:
    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

protected:
    MessageDispatcherClientConfig() = default;
};

/// A processor that knows its bus and registers itself when it is opened for the types of its configuration.
/// Once the bus has ended, it counts as closed and must not be opened again. Where other threads dispatch, a
/// derived class closes it in its own destructor: by the time the base does so, the derived part is gone.
class TSL_EXPORT MessageDispatcherClient : public MessageProcessor
{
public:
    ClassDescription const & GetClassDesc() const override;

    /// Closes.
    ~MessageDispatcherClient() override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    /// What Register of the bus answers. After a failure the client counts as closed, while the types that
    /// were taken stay with the bus.
    [[nodiscard]] Result Open() override;

    /// Unregisters from all types. Does nothing to a client that is not open.
    void Close() override;

    /// The bus has ended. A derived class that has something to do then calls this as well.
    void HandlerDestruction() const override { m_bRegistered = false; }

protected:
    explicit MessageDispatcherClient(MessageDispatcher & oDispatcher) : m_oDispatcher(oDispatcher) {}
    MessageDispatcherClient(MessageDispatcherClient const & oSource) = default;

private:
    MessageDispatcher & m_oDispatcher;
    mutable bool m_bRegistered = false;
};

} // namespace tsl
