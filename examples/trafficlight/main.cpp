#include "../ReportingProgram.h"
#include "Crossing.h"
#include "SignalMessage.h"

#include <tessel/Tessel.h>
#include <tesselkit/MachineDrawing.h>

#include <iostream>
#include <memory>
#include <vector>

namespace
{

class TrafficLightConfig : public tsl::ConsoleApplicationConfig
{
};

/// Drives a crossing by the words of the command line: a number runs that many steps, any other word is sent to the
/// crossing. Prints what the crossing sends, with the number of the step.
class TrafficLight : public ReportingProgram
{
public:
    TrafficLight() : ReportingProgram("trafficlight", new TrafficLightConfig) {}

    static tsl::Application * Create() { return new TrafficLight; }

protected:
    tsl::Result PreRun() override
    {
        RegisterCrossing();
        return ReportingProgram::PreRun();
    }

    tsl::Result Run() override
    {
        std::vector<tsl::String> vWords;
        GetConfig().GetCmdLineParser().GetParameters(vWords);

        auto * const pMachine = new Crossing;
        tsl::TaskContext oCrossing(pMachine);
        SimulateOnePhase(oCrossing);
        for (tsl::String const & sWord : vWords)
            Obey(oCrossing, sWord);
        return Draw(*pMachine);
    }

private:
    /// Prints a picture of the machine, in the language that the option "draw" names.
    tsl::Result Draw(Crossing & oMachine) const
    {
        tsl::String sLanguage;
        if (!GetConfig().GetCmdLineParser().GetOption("draw", sLanguage, tsl::CmdLineParser::eOptionAny))
            return tsl::Result();
        if (!sLanguage.IsEmpty() && sLanguage != "mermaid" && sLanguage != "dot")
            return tsl::MakeResult(tsl::ERR::eBadData,
                tsl::String("A picture is drawn for 'mermaid' or 'dot', not for '") + sLanguage + "'.");

        tsl::MachineDrawing const oDrawing(oMachine, GetCrossingNames());
        std::cout << (sLanguage == "dot" ? oDrawing.GetGraphviz() : oDrawing.GetMermaid()).s_str();
        return tsl::Result();
    }

    /// The phase that the option "quick" names lasts one step.
    void SimulateOnePhase(tsl::TaskContext & oCrossing)
    {
        tsl::String sPhase;
        if (!GetConfig().GetCmdLineParser().GetOption("quick", sPhase, tsl::CmdLineParser::eOptionAny))
            return;

        tsl::TaskContextMessage oMessage;
        oMessage.SetActionId(tsl::TaskContextMessage::eActionSet);
        oMessage.SetTaskName(sPhase);
        oMessage.SetEnabled(true);
        oCrossing.WriteMessage(oMessage);
    }

    void Obey(tsl::TaskContext & oCrossing, tsl::String const & sWord)
    {
        tsl::ValueInt32 iSteps;
        if (iSteps.GetConverter().ConvertFromText(sWord, iSteps).IsOk())
            MakeSteps(oCrossing, iSteps.AsInt32());
        else
            oCrossing.WriteMessage(SignalMessage(sWord));
    }

    void MakeSteps(tsl::TaskContext & oCrossing, int iCount)
    {
        for (int i = 0; i < iCount; ++i)
        {
            ++m_iStep;
            oCrossing.Process();
            PrintSignals(oCrossing);
        }
    }

    void PrintSignals(tsl::TaskContext & oCrossing)
    {
        while (std::unique_ptr<tsl::Message> const pMessage{oCrossing.ReadMessage()})
        {
            if (auto const * const pSignal = dynamic_cast<SignalMessage const *>(pMessage.get()))
                std::cout << m_iStep << ": " << pSignal->GetWord().s_str() << '\n';
        }
    }

    int m_iStep = 0;
};

} // namespace

int main(int iCount, char ** pArguments)
{
    return TrafficLight::Start("trafficlight", &TrafficLight::Create, iCount, pArguments);
}
