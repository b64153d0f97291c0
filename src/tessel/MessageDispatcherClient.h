#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageProcessor.h>

#include <memory>

namespace tsl
{

class MessageDispatcher;

/// The configuration of a MessageDispatcherClient: the types for which the client registers. Its registered base is
/// MessageProcessor. One thread at a time uses it.
class TSL_EXPORT MessageDispatcherClientConfig
    : public Described<MessageDispatcherClientConfig, MessageProcessorConfig, ClassDescription::eAbstract,
          MessageProcessor>
{
protected:
    MessageDispatcherClientConfig() = default;
};

template<>
TSL_EXPORT ClassDescription const & Described<MessageDispatcherClientConfig, MessageProcessorConfig,
    ClassDescription::eAbstract, MessageProcessor>::GetStaticClassDesc();

/// A processor that knows its bus: Open registers it for the types of its configuration, and Close unregisters it.
/// A derived class implements Process, GetConfig, SetConfig and DoCopy.
///
///     Counter oCounter(oBus); // derives from MessageDispatcherClient
///     tsl::Result const oResult = oCounter.Open();
///     // ... messages arrive ...
///     oCounter.Close();
///
/// It may outlive its bus. It may also be registered with other buses, from which the program must unregister it.
///
/// Any thread may close it. It may be destroyed as soon as Close has returned, with the exception described at
/// MessageDispatcher. Where other threads dispatch, a derived class calls Close in its own destructor: when the
/// destructor of this base does so, the derived part is destroyed already.
class TSL_EXPORT MessageDispatcherClient
    : public Described<MessageDispatcherClient, MessageProcessor, ClassDescription::eAbstract>
{
public:
    /// Unregisters from all types of its bus, also those that a failed Open has registered.
    ~MessageDispatcherClient() override;

    /// Registers, and returns what the bus returns. After a failure the client counts as closed, but remains
    /// registered for the types before the bad one. Code 3 if the bus has been destroyed.
    [[nodiscard]] Result Open() override;

    /// Unregisters from all types of its bus. If the client is closed already, only waits until no delivery runs
    /// that may still call it.
    void Close() override;

protected:
    /// Any copy of the dispatcher will do: copies are one bus.
    explicit MessageDispatcherClient(MessageDispatcher & oDispatcher);
    MessageDispatcherClient(MessageDispatcherClient const & oSource);

private:
    struct Private;
    std::unique_ptr<Private> m;
};

template<>
TSL_EXPORT ClassDescription const &
Described<MessageDispatcherClient, MessageProcessor, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
