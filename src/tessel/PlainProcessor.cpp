#include <tessel/PlainProcessor.h>

#include "LastingObject.h"

#include <tessel/MessageDispatcher.h>

namespace tsl
{

MessageProcessorConfig const & PlainProcessor::GetConfig() const
{
    return LastingObject<MessageDispatcherConfig>();
}

Result PlainProcessor::SetConfig(MessageProcessorConfig const &)
{
    return Result();
}

Result PlainProcessor::Open()
{
    return Result();
}

} // namespace tsl
