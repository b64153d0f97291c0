#include <tessel/DebugMessage.h>

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
template<>
ClassDescription const & Described<DebugMessage, Message>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

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

DebugMessageConstIterator::DebugMessageConstIterator(DebugMessage const & oMessage)
    : NamedValueIterator(GetRows().size()),
      m_oMessage(oMessage),
      m_iThreadId(static_cast<int>(oMessage.GetThreadId())),
      m_iProcessId(oMessage.GetProcessId())
{
}

// Out of line, so that the vtable and the type record of the class are only in the library.
DebugMessageConstIterator::~DebugMessageConstIterator() = default;

std::span<NamedGetter<DebugMessageConstIterator> const> DebugMessageConstIterator::GetRows()
{
    static constexpr NamedGetter<DebugMessageConstIterator> aRows[] = {
        {"Pid", GetMember<&DebugMessageConstIterator::m_iProcessId>},
        {"Tid", GetMember<&DebugMessageConstIterator::m_iThreadId>},
        {"Id",
            [](DebugMessageConstIterator const & o) -> Value const &
            { return o.m_oMessage.GetIdentifier(); }},
        {"Text", [](DebugMessageConstIterator const & o) -> Value const & { return o.m_oMessage.GetText(); }},
        {"File", [](DebugMessageConstIterator const & o) -> Value const & { return o.m_oMessage.GetFile(); }},
        {"Line", [](DebugMessageConstIterator const & o) -> Value const & { return o.m_oMessage.GetLine(); }},
    };
    return aRows;
}

} // namespace tsl
