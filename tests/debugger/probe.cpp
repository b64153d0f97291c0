// A program that stops with an object of each class that the debugger shows.

#include "Crossing.h"
#include "Messages.h"

#include <tessel/Tessel.h>

#include <memory>

static void StopHere(
    tsl::Message const & oMessage, tsl::Task const & oTask, tsl::Pipe<tsl::Message> const & oPipe)
{
    static_cast<void>(oMessage);
    static_cast<void>(oTask);
    static_cast<void>(oPipe);
}

int main()
{
    tsl::String const sText("some \"text\"");
    tsl::ValueString const sValue("value");
    tsl::ValueString const sNull;
    tsl::ValueInt32 const iValue(-42);
    tsl::ValueInt32 const iNull;
    tsl::ValueFloat32 const fValue(0.5F);
    tsl::DateTime const oTime(951827696, tsl::Time::ePrecisionSecond);
    tsl::ValueDateTime const oValueTime(951827696, tsl::Time::ePrecisionHour);
    tsl::TimeSpan const oSpan(-90061);
    tsl::NamedValue const oNamed("number", new tsl::ValueInt32(7));

    tsl::Result const oSuccess;
    tsl::Result oFailure(5, "Cannot open the file.", tsl::MakeResult(2, "No such file.", "file.cpp", 34));
    oFailure.SetSource("probe.cpp", 12);
    oFailure.SetCause("none");
    tsl::Result oWrapped(3, "A text that is longer than what most of the failures have to say.", oFailure);
    oWrapped.InsertFront(tsl::Result(4, "In front.", tsl::MakeResult(6, "Inside.", "file.cpp", 56)));

    ProgressMessage const oProgress(1, 3);
    tsl::ClassDescription const & oClass = ProgressMessage::GetStaticClassDesc();

    RegisterCrossing();
    auto const pCrossing = new Crossing;
    tsl::TaskContext oContext(pCrossing);
    oContext.Process();

    // More than one block of the queue, of which some is taken already.
    tsl::PipeDebMessage oPipe("work");
    for (int i = 0; i < 70; ++i)
        oPipe.Send(ProgressMessage(i, 70));
    for (int i = 0; i < 66; ++i)
        std::unique_ptr<tsl::Message>(oPipe.Receive());
    tsl::DefaultPipe<tsl::String, tsl::CriticalSectionMutex, tsl::CloneByCopyConstructor<tsl::String>> oTexts;
    oTexts.Send("line");

    StopHere(oProgress, *pCrossing, oPipe);
    return static_cast<int>(sText.GetLength() + oTexts.GetSize() + oClass.GetClassId()) == 0;
}
