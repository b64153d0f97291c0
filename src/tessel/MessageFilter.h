#pragma once

#include <tessel/Export.h>

namespace tsl
{

class Message;

/// A question about messages: a task that waits takes those for which the answer is yes.
///
/// Objects are values. A filter is used by one thread at a time unless its class says otherwise.
class TSL_EXPORT MessageFilter
{
public:
    MessageFilter(MessageFilter const &) = default;
    MessageFilter & operator=(MessageFilter const &) = default;
    virtual ~MessageFilter() = default;

    virtual bool Match(Message const & oMessage) const = 0;

protected:
    MessageFilter() = default;
};

/// Takes nothing. Any thread may use it.
class TSL_EXPORT MessageFilterNoMessage : public MessageFilter
{
public:
    bool Match(Message const & oMessage) const override;
};

/// Takes everything. Any thread may use it.
class TSL_EXPORT MessageFilterAllMessages : public MessageFilter
{
public:
    bool Match(Message const & oMessage) const override;
};

} // namespace tsl
