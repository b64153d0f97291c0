#pragma once

#include <tesselkit/MessageList.h>

#include <tessel/MessageDispatcher.h>
#include <tessel/PlainProcessor.h>

#include <condition_variable>
#include <mutex>
#include <vector>

namespace tsl
{

/// A processor that keeps a copy of each message that it gets, from the program's bus or from one of the test.
///
///     tsl::MessageRecorder oRecorder({Greeting::GetStaticClassDesc().GetClassId()});
///     Greet();
///     EXPECT_STREQ(oRecorder.Take().GetText().c_str(), "Name='Ann'\n");
///
/// It is registered from its construction to its destruction, or to the end of the bus. Any thread may use it, and
/// messages may come on several threads at once. A message that cannot be copied, see Root::GetCopy, is an assertion
/// failure.
class MessageRecorder : public PlainProcessor
{
public:
    /// Registers with the program's bus, or with oBus, for the message types, by default for all messages. A type that
    /// no message has throws an Exception of code 2.
    explicit MessageRecorder(std::vector<unsigned int> const & vTypes = {Message::GetBaseType()});
    explicit MessageRecorder(
        MessageDispatcher & oBus, std::vector<unsigned int> const & vTypes = {Message::GetBaseType()});
    ~MessageRecorder() override;
    MessageRecorder(MessageRecorder const &) = delete;
    MessageRecorder & operator=(MessageRecorder const &) = delete;

    /// How many messages it has that were not taken yet.
    int GetCount() const;

    /// Waits until there are so many, up to iTimeout milliseconds, and returns whether there are.
    bool WaitForCount(int iCount, int iTimeout = 10'000) const;

    /// Takes all messages out.
    MessageList Take();

    /// Called by the bus.
    void Process(Message const & oMessage, Result & oResult) const override;
    void HandlerDestruction() const override;

private:
    MessageDispatcher * m_pBus; // null for the program's bus
    mutable std::mutex m_oMutex;
    mutable std::condition_variable m_oArrived;
    mutable MessageList m_oMessages;
    mutable bool m_bBusEnded = false;
};

} // namespace tsl
