#include <tessel/DebugMessage.h>

#include <tessel/Assertion.h>
#include <tessel/OS.h>

namespace tsl
{

DebugMessage::DebugMessage() : m_iThreadId(OS::GetThreadId()), m_iProcessId(OS::GetProcessId()) {}

DebugMessage::DebugMessage(ValueString const & sText)
    : m_sText(sText), m_iThreadId(OS::GetThreadId()), m_iProcessId(OS::GetProcessId())
{
}

template<>
constexpr ClassSource CLASS_SOURCE<DebugMessage>{};
template ClassDescription const & Described<DebugMessage, Message>::GetStaticClassDesc();

void DebugMessage::SetText(String const & sText)
{
    m_sText = sText.s_str();
}

void DebugMessage::SetFile(char const * sFile)
{
    m_sFile = sFile;
}

void DebugMessage::SetLine(int iLine)
{
    m_iLine = iLine;
}

void DebugMessage::SetIdentifier(char const * sIdentifier)
{
    m_sIdentifier = sIdentifier;
}

void DebugMessage::SetThreadId(unsigned long iThreadId)
{
    m_iThreadId = iThreadId;
}

void DebugMessage::SetProcessId(int iProcessId)
{
    m_iProcessId = iProcessId;
}

DebugMessage * DebugMessage::GetClone() const
{
    return static_cast<DebugMessage *>(GetCopy());
}

std::unique_ptr<AbstractNamedValueConstIterator<Value>> DebugMessage::GetConstIterator() const
{
    return std::make_unique<DebugMessageConstIterator>(*this);
}

void DebugMessage::DoCopy(Root const & oSource)
{
    *this = static_cast<DebugMessage const &>(oSource);
}

static constexpr int ELEMENT_COUNT = 6;

DebugMessageConstIterator::DebugMessageConstIterator(DebugMessage const & oMessage)
    : MessageConstIterator(ELEMENT_COUNT),
      m_oMessage(oMessage),
      m_iThreadId(static_cast<int>(oMessage.GetThreadId())),
      m_iProcessId(oMessage.GetProcessId())
{
}

Value const & DebugMessageConstIterator::GetValue() const
{
    switch (GetPosition())
    {
    case 0:
        return m_iProcessId;
    case 1:
        return m_iThreadId;
    case 2:
        return m_oMessage.GetIdentifier();
    case 3:
        return m_oMessage.GetText();
    case 4:
        return m_oMessage.GetFile();
    case 5:
        return m_oMessage.GetLine();
    default:
        XAssertionFailed("false", "DebugMessageConstIterator::GetValue(): Zugriff auf ungültiges Element.");
    }
}

char const * DebugMessageConstIterator::GetName() const
{
    static constexpr char const * aNames[ELEMENT_COUNT] = {"Pid", "Tid", "Id", "Text", "File", "Line"};
    if (IsEnd())
        XAssertionFailed("false", "DebugMessageConstIterator::GetName(): Zugriff auf ungültiges Element.");
    return aNames[GetPosition()];
}

} // namespace tsl
