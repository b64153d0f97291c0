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

/// The configuration of a processor: the message types that it receives. It is used by one thread at a time.
class TSL_EXPORT MessageProcessorConfig
    : public Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>
{
public:
    MessageProcessorConfig(MessageProcessorConfig const & oSource) = default;
    MessageProcessorConfig & operator=(MessageProcessorConfig const & oSource) = default;

    ~MessageProcessorConfig() override = default;

    /// Class ids of messages, see Message::GetType; none by default. A MessageDispatcherClient registers for them.
    virtual void SetMessageTypes(std::vector<unsigned int> const & vTypes);
    std::vector<unsigned int> const & GetMessageTypes() const { return m_vTypes; }

protected:
    MessageProcessorConfig() = default;

private:
    std::vector<unsigned int> m_vTypes;
};

template<>
TSL_EXPORT ClassDescription const &
Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc();

/// An object that receives messages from a bus: writes them, counts them, or acts on them. The simplest way to make
/// one is to derive from PlainProcessor:
///
///     class Printer : public tsl::PlainProcessor
///     {
///         void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
///     };
///
/// A bus does not own its processors. It calls Process on the thread that dispatches, one call at a time for each
/// list of the bus. The processor's class says which other threads may use it.
class TSL_EXPORT MessageProcessor : public Described<MessageProcessor, Root, ClassDescription::eAbstract>
{
public:
    MessageProcessor(MessageProcessor const &) = default;
    MessageProcessor & operator=(MessageProcessor const &) = default;

    ~MessageProcessor() override;

    /// Receives a message. All processors of one dispatch share the result: each may read what an earlier one has
    /// reported, and report something itself.
    virtual void Process(Message const & oMessage, Result & oResult) const = 0;

    /// The reference holds as long as the processor.
    virtual MessageProcessorConfig const & GetConfig() const = 0;

    /// Takes the configuration over as a copy.
    [[nodiscard]] virtual Result SetConfig(MessageProcessorConfig const & oConfig) = 0;

    /// Opens and closes what the processor writes to.
    [[nodiscard]] virtual Result Open() = 0;
    virtual void Close() = 0;

    /// A bus that this processor is registered with is being destroyed. Must not throw.
    virtual void HandlerDestruction() const {}

protected:
    MessageProcessor() = default;
};

template<>
TSL_EXPORT ClassDescription const &
Described<MessageProcessor, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

/// An interface without operations of its own. The library does not use it.
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
