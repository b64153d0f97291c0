#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageDispatcherClient.h> // for programs that have it from here
#include <tessel/MessageProcessor.h>

#include <memory>
#include <vector>

namespace tsl
{

/// The configuration of a bus. Root::Set copies nothing; assignment copies the types. One thread at a time uses it.
class TSL_EXPORT MessageDispatcherConfig : public Described<MessageDispatcherConfig, MessageProcessorConfig>
{
public:
    MessageDispatcherConfig() = default;

protected:
    void DoCopy(Root const &) override {}
};

template<>
TSL_EXPORT ClassDescription const &
Described<MessageDispatcherConfig, MessageProcessorConfig>::GetStaticClassDesc();

/// A bus: delivers each message to the processors that are registered for its exact type, and then to those
/// registered for Message. Each type has a list, which is sorted by the address of the processors.
///
///     tsl::MessageDispatcher oBus;
///     Printer oPrinter;
///     tsl::Result oResult = oBus.Register(oPrinter, {tsl::DebugMessage::GetStaticClassDesc().GetClassId()});
///     oBus.Process(tsl::DebugMessage("Hello"), oResult);
///     oBus.Unregister(oPrinter);
///
/// Delivery runs on the caller's thread. Any thread may register, unregister and dispatch. A list is locked while
/// its processors are called, so messages of one type are delivered one after the other. From inside a delivery, a
/// processor may dispatch further messages, and register and unregister itself and others. The delivery then
/// continues with the next processor by address: a removed one is not called any more, and an added one is called
/// if its address is above the present one.
///
/// Unregister waits for running deliveries of the lists that the processor was in, one list at a time. When it
/// returns, no other thread is inside the processor for this bus, and none will be, so the processor may be
/// destroyed. There is one exception, so that processors that remove themselves and each other do not deadlock: a
/// thread that is itself inside a delivery does not wait for a thread that waits for it in turn, on any bus. The
/// removed processor may then still be running there when Unregister returns.
///
/// Registration for a type, removal from it and delivery take time in proportion to the number of processors of
/// that type. The number of types matters only for Unregister without types and for the destructor.
///
/// Processors are not owned. When the bus is destroyed, HandlerDestruction of each registered processor is called,
/// once for each list. So a processor that is destroyed before its bus must be unregistered first.
///
/// A program must avoid these deadlocks: two processors of different types that each dispatch the other's type, on
/// two threads; a lock that the program holds while it unregisters or dispatches, and that a processor takes as
/// well. And this use of a destroyed object: a processor is destroyed from inside a delivery, while it runs on
/// another thread and unregisters the one that destroys it there, or dispatches a message of its type. Outside of
/// deliveries a processor may always be destroyed once it is unregistered.
class TSL_EXPORT MessageDispatcher : public Described<MessageDispatcher, MessageProcessor>
{
public:
    MessageDispatcher();

    /// Copies share one bus, which is destroyed with the last of them.
    MessageDispatcher(MessageDispatcher const & oSource);
    MessageDispatcher & operator=(MessageDispatcher const & oSource);

    ~MessageDispatcher() override;

    /// Registers the processor for message types, once for each. Code 2 at the first type that is not the class id
    /// of a message class; the types before it stay registered.
    [[nodiscard]] Result Register(
        MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);

    /// Unregisters the processor from some types or from all, and waits for running deliveries; see above. Does
    /// nothing for types that it is not registered for. Does not fail for lack of memory.
    void Unregister(MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor);

    /// Delivers a message. oResult is not cleared. An Exception of a processor ends the delivery to its list, and
    /// its Result is put in front of oResult. Any other exception reaches the caller.
    ///
    /// A message class must derive directly from Message. A message of a class further down is delivered to its
    /// exact type and to its direct base, and a failure of code 6 and category 2 that names the class is put in
    /// front.
    void Process(Message const & oMessage, Result & oResult) const override;

    MessageProcessorConfig const & GetConfig() const override;

    /// Checks the class and copies nothing. Anything but a MessageDispatcherConfig is an assertion failure.
    [[nodiscard]] Result SetConfig(MessageProcessorConfig const & oConfig) override;

    /// Always succeeds; a bus needs no Open.
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

template<>
TSL_EXPORT ClassDescription const & Described<MessageDispatcher, MessageProcessor>::GetStaticClassDesc();

} // namespace tsl
