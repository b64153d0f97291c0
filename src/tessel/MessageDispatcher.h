#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageDispatcherClient.h> // for programs that have it from here
#include <tessel/MessageProcessor.h>

#include <memory>
#include <vector>

namespace tsl
{

/// The configuration of a bus. Copying through Root::Set copies nothing; assignment copies the types.
class TSL_EXPORT MessageDispatcherConfig : public Described<MessageDispatcherConfig, MessageProcessorConfig>
{
public:
    MessageDispatcherConfig() = default;

protected:
    void DoCopy(Root const &) override {}
};

extern template ClassDescription const &
Described<MessageDispatcherConfig, MessageProcessorConfig>::GetStaticClassDesc();

/// A bus: hands each message to the processors registered for its exact type and then to those
/// registered for Message, within a list in the order of their addresses.
///
/// Delivery runs on the caller's thread. Any thread may register, unregister and dispatch. The list that is
/// being delivered to is locked, so messages of one type pass one after the other. From inside a delivery, a
/// processor may dispatch further messages, register and unregister itself and others: the delivery goes on
/// with the next processor by address, so one that was removed gets nothing more, and one that was added is
/// served if its address lies behind the present one.
///
/// When Unregister returns, no other thread is inside the processor by this bus, and none will be, so that it
/// may be destroyed: running deliveries of the lists that it was in are waited for, one list at a time. There
/// is one exception, so that processors which remove themselves and each other never block each other: a
/// thread that is itself inside a delivery does not wait for a thread that in turn waits for it, by way of
/// any bus. Then the removed processor may still be running there when Unregister returns.
///
/// To register a processor for a type or to remove it takes time in proportion to the processors of that type, as
/// does a delivery to them; the number of types counts only for Unregister without types and at the end.
///
/// Processors are not owned. One that is registered when the bus is destroyed is told by its
/// HandlerDestruction, once for each list, so a processor that ends before its bus has to be unregistered
/// first.
///
/// What a program has to avoid, since threads would wait for each other without end: two processors of
/// different types that each dispatch the other's type on two threads; a lock of the program that is held
/// while it unregisters or dispatches, and that a processor takes as well. What would use a destroyed object:
/// to destroy a processor from inside a delivery while it runs on another thread and there unregisters the
/// one that destroys it, or dispatches a message of its type. Outside of deliveries it is always safe.
class TSL_EXPORT MessageDispatcher : public Described<MessageDispatcher, MessageProcessor>
{
public:
    MessageDispatcher();

    /// Copies are the same bus; it is destroyed with the last of them.
    MessageDispatcher(MessageDispatcher const & oSource);
    MessageDispatcher & operator=(MessageDispatcher const & oSource);

    ~MessageDispatcher() override;

    /// Registers the processor for message types, once for each. Code 2 at the first type that is not the
    /// class id of a message class; the types before it stay registered.
    [[nodiscard]] Result Register(
        MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);

    /// Does nothing for types that the processor is not registered for. Needs no memory. What may still run
    /// when it returns is told above.
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
    friend struct DispatcherEnd;
    friend class MessageDispatcherClient;

    struct Private;
    std::shared_ptr<Private> m;
};

extern template ClassDescription const & Described<MessageDispatcher, MessageProcessor>::GetStaticClassDesc();

} // namespace tsl
