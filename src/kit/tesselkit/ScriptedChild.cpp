#include <tesselkit/ScriptedChild.h>

#include <memory>
#include <new>

namespace tsl
{

ScriptedChild::~ScriptedChild()
{
    // Again if the memory runs out.
    for (bool bEnded = false; !bEnded;)
        try
        {
            static_cast<void>(Kill(0));
            bEnded = WaitTermination() != eWaitTimeout;
        }
        catch (std::bad_alloc const &)
        {
            bEnded = WaitTermination(0) != eWaitTimeout;
        }
}

Result ScriptedChild::Start()
{
    return Run(m_iProcessId);
}

String ScriptedChild::MakeCommand(String const & sProgram, String const & sScript)
{
    // In quotes, since the path may have a blank.
    return String("\"") + sProgram + "\" " + sScript;
}

ScriptedChild::ScriptedChild(String const & sProgram, String const & sScript, int iMode)
{
    SetMode(iMode);
    SetCommand(MakeCommand(sProgram, sScript));
}

String ScriptedChild::TakeLines(String * (CmdLine::*fReceive)())
{
    String sLines;
    while (std::unique_ptr<String> const pLine{(this->*fReceive)()})
        sLines << *pLine << '\n';
    return sLines;
}

} // namespace tsl
