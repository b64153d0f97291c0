// Drives a machine of one task through all that is traced, and prints the debug messages as
// "identifier: text". Which of them there are is up to the ini file.

#include "../TestMachine.h"
#include "../TestMessages.h"

#include <tessel/Tessel.h>

#include <iostream>

namespace
{

void Print(tsl::Message const & oMessage, tsl::Result &)
{
    auto const & oDebug = dynamic_cast<tsl::DebugMessage const &>(oMessage);
    std::cout << oDebug.GetIdentifier().s_str() << ": " << oDebug.GetText().s_str() << '\n';
}

int Talk(tsltest::OpenTask & oTask)
{
    tsl::MessageFilterNoMessage const oNothing;
    tsl::MessageFilterAllMessages const oAll;
    delete oTask.Receive(0);
    delete oTask.ReceiveFilter(oNothing, 0);
    delete oTask.ReceiveFilter(oAll, -1);
    delete oTask.ReceiveFilter(oAll, 0);
    oTask.Send(tsltest::NumberMessage(9));
    oTask.ClearSendBuffer();
    oTask.ClearReveiveBuffer();
    return tsl::Task::TR_RETURN;
}

void RunMachine()
{
    tsl::TaskContext oContext(new tsltest::OneTaskMachine(&Talk));
    for (int i = 1; i <= 3; ++i)
        oContext.WriteMessage(tsltest::NumberMessage(i));
    oContext.Process();
    delete oContext.ReadMessage();

    tsl::TaskContextMessage oMessage;
    oMessage.SetTaskName("task");
    oMessage.SetMode(3);
    for (bool const bEnabled : {true, false})
    {
        oMessage.SetEnabled(bEnabled);
        oContext.WriteMessage(oMessage);
    }
}

} // namespace

int main()
{
    tsltest::TestProcessor const oPrinter(&Print);
    tsl::Result const oResult =
        tsl::Support::GetAppDisp().Register(oPrinter, {tsl::DebugMessage::GetStaticClassDesc().GetClassId()});
    RunMachine();
    tsl::Support::GetAppDisp().Unregister(oPrinter);
    return oResult.GetErrorCode();
}
