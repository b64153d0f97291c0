#pragma once

#include <tesselkit/MessageList.h>

#include <tessel/Message.h>
#include <tessel/String.h>
#include <tessel/TaskContext.h>
#include <tessel/TaskProcessor.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace tsl
{

/// A context for tests, in which time passes only when the machine waits or the test says so. Messages to the machine
/// arrive at times of that clock.
///
///     tsl::MachineDriver oDriver(new Ticker);
///     oDriver.Schedule(2500, Stop());
///     EXPECT_TRUE(oDriver.Run(10));
///     EXPECT_STREQ(oDriver.TakeMessages().GetText().c_str(), "tick\ntick\ntick\n");
///     EXPECT_EQ(oDriver.GetTime(), 2500);
///
/// As with every context, Task::Receive waits in slices of at most 100 ms, and looks for messages after each. One thread
/// at a time uses it. Copies share the machine, as those of TaskContext do, but each has a clock and a script.
class MachineDriver : public TaskContext
{
public:
    /// Owns the topmost machine from now on. The clock begins at 0.
    explicit MachineDriver(TaskProcessor * pMachine);

    /// The clock, in milliseconds.
    std::int64_t GetTime() const { return m_iTime; }

    /// Turns the clock on; messages that are due then arrive.
    void Advance(int iDuration);

    /// A copy of the message arrives as soon as the clock shows at least iTime, at once if it does already. Those of
    /// the same time arrive in the order of the calls.
    void Schedule(std::int64_t iTime, Message const & oMessage);

    /// A machine that waits beyond this time is stopped by an Exception of code 11 out of its wait; a day by default.
    void SetTimeLimit(std::int64_t iTime) { m_iTimeLimit = iTime; }

    /// Runs one step. Returns Task::TR_REMAIN, or Task::TR_RETURN if the machine has ended.
    int Step() { return GetTaskProcessor().Process(*this); }
    void Process() override { static_cast<void>(Step()); }

    /// Runs up to iSteps steps, and turns the clock by iPause after each. Returns whether the machine has ended; there
    /// is no further step then.
    bool Run(int iSteps, int iPause = 0);

    /// What the machine has sent since the last call.
    MessageList TakeMessages();

    /// The names of the tasks in which the machine is, from the topmost machine down, each followed by a slash but the
    /// last one, such as "Crossing/Day/Red". Only the machine's own name before the first step.
    String GetPath() const;

    /// All waits so far, in milliseconds.
    std::vector<int> const & GetWaits() const { return m_vWaits; }

protected:
    /// Returns at once, with the clock turned.
    void Wait(int iDuration, bool bAlertable) override;

private:
    std::int64_t m_iTime = 0;
    std::int64_t m_iTimeLimit = 24 * 60 * 60 * 1000;
    std::multimap<std::int64_t, std::shared_ptr<Message const>> m_oScript;
    std::vector<int> m_vWaits;
};

} // namespace tsl
