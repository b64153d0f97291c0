#include <tessel/MessageFilter.h>

namespace tsl
{

bool MessageFilterNoMessage::Match(Message const &) const
{
    return false;
}

bool MessageFilterAllMessages::Match(Message const &) const
{
    return true;
}

} // namespace tsl
