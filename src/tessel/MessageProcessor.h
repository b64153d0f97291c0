#pragma once

#include <tessel/Configuration.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/Root.h>

#include <vector>

namespace tsl
{

class Message;

/// The configuration of a processor: the message types that it wants.
class TSL_EXPORT MessageProcessorConfig
    : public Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>
{
public:
    MessageProcessorConfig(MessageProcessorConfig const & oSource) = default;
    MessageProcessorConfig & operator=(MessageProcessorConfig const & oSource) = default;

    ~MessageProcessorConfig() override = default;

    virtual void SetMessageTypes(std::vector<unsigned int> const & vTypes);
    std::vector<unsigned int> const & GetMessageTypes() const { return m_vTypes; }

protected:
    MessageProcessorConfig() = default;

private:
    std::vector<unsigned int> m_vTypes;
};

extern template ClassDescription const &
Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc();

/// Anything that can take a message.
///
/// A bus calls Process on whatever thread dispatches, one call at a time per list of the bus; which other
/// threads may use a processor is for its class to say.
class TSL_EXPORT MessageProcessor : public Described<MessageProcessor, Root, ClassDescription::eAbstract>
{
public:
    MessageProcessor(MessageProcessor const &) = default;
    MessageProcessor & operator=(MessageProcessor const &) = default;

    ~MessageProcessor() override;

    /// Takes a message. The result is shared by all processors that get it: each may read what the one
    /// before left there, and leave something itself.
    virtual void Process(Message const & oMessage, Result & oResult) const = 0;

    virtual MessageProcessorConfig const & GetConfig() const = 0;
    [[nodiscard]] virtual Result SetConfig(MessageProcessorConfig const & oConfig) = 0;
    [[nodiscard]] virtual Result Open() = 0;
    virtual void Close() = 0;

    /// A bus that this processor is registered with is being destroyed. Must not throw.
    virtual void HandlerDestruction() const {}

protected:
    MessageProcessor() = default;
};

extern template ClassDescription const &
Described<MessageProcessor, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

/// An interface without operations of its own.
class TSL_EXPORT RequestChannel
{
public:
    virtual ~RequestChannel() = default;

protected:
    RequestChannel() = default;
    RequestChannel(RequestChannel const &) = default;
    RequestChannel & operator=(RequestChannel const &) = default;
};

} // namespace tsl
