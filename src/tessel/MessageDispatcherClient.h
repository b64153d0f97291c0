#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageProcessor.h>

#include <memory>

namespace tsl
{

class MessageDispatcher;

/// The configuration of a MessageDispatcherClient. Its registered base is MessageProcessor.
class TSL_EXPORT MessageDispatcherClientConfig
    : public Described<MessageDispatcherClientConfig, MessageProcessorConfig, ClassDescription::eAbstract,
          MessageProcessor>
{
protected:
    MessageDispatcherClientConfig() = default;
};

extern template ClassDescription const & Described<MessageDispatcherClientConfig, MessageProcessorConfig,
    ClassDescription::eAbstract, MessageProcessor>::GetStaticClassDesc();

/// A processor that knows its bus and registers itself when it is opened for the types of its configuration.
/// It may outlive its bus, and know other buses besides, from which it has to be unregistered by hand.
///
/// Any thread may close it. It may be destroyed as soon as Close has returned, on the terms of
/// MessageDispatcher::Unregister. Where other threads dispatch, a derived class closes it in its own
/// destructor: by the time the base does so, the derived part is gone.
class TSL_EXPORT MessageDispatcherClient
    : public Described<MessageDispatcherClient, MessageProcessor, ClassDescription::eAbstract>
{
public:
    /// Unregisters from all types of its bus, also those that a failed Open has left.
    ~MessageDispatcherClient() override;

    /// What Register of the bus returns. After a failure the client counts as closed, while the types that
    /// were taken stay with the bus. Code 3 if the bus has been destroyed.
    [[nodiscard]] Result Open() override;

    /// Unregisters from all types of its bus. A client that is not open is only waited for, if it was closed
    /// from inside a delivery that still runs.
    void Close() override;

protected:
    explicit MessageDispatcherClient(MessageDispatcher & oDispatcher);
    MessageDispatcherClient(MessageDispatcherClient const & oSource);

private:
    struct Private;
    std::unique_ptr<Private> m;
};

extern template ClassDescription const &
Described<MessageDispatcherClient, MessageProcessor, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
