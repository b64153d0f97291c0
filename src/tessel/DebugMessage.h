#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Message.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <span>

namespace tsl
{

/// A line of trace text with its source position and the thread and process that it comes from.
class TSL_EXPORT DebugMessage : public Described<DebugMessage, Message>
{
public:
    /// Carries the calling thread and process; all else is null.
    DebugMessage();
    explicit DebugMessage(ValueString const & sText);
    DebugMessage(DebugMessage const & oSource) = default;
    DebugMessage & operator=(DebugMessage const & oSource) = default;

    ~DebugMessage() override = default;

    void SetText(String const & sText);
    void SetFile(char const * sFile);
    void SetLine(int iLine);

    /// The name of the log point.
    void SetIdentifier(char const * sIdentifier);
    void SetThreadId(unsigned long iThreadId);
    void SetProcessId(int iProcessId);

    ValueString const & GetText() const { return m_sText; }
    ValueString const & GetFile() const { return m_sFile; }
    ValueString const & GetIdentifier() const { return m_sIdentifier; }
    ValueInt32 const & GetLine() const { return m_iLine; }
    unsigned long const & GetThreadId() const { return m_iThreadId; }
    int const & GetProcessId() const { return m_iProcessId; }

    /// A copy that keeps the thread and process of its origin; the caller deletes it.
    DebugMessage * GetClone() const;

protected:
    /// "Pid", "Tid", "Id", "Text", "File", "Line".
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    void DoCopy(Root const & oSource) override;

private:
    ValueString m_sText;
    ValueString m_sFile;
    ValueString m_sIdentifier;
    ValueInt32 m_iLine;
    unsigned long m_iThreadId;
    int m_iProcessId;
};

extern template ClassDescription const & Described<DebugMessage, Message>::GetStaticClassDesc();

/// The walk over a DebugMessage, which must outlive it. Access outside the elements is an assertion
/// failure.
class TSL_EXPORT DebugMessageConstIterator : public NamedValueIterator<DebugMessageConstIterator>
{
public:
    explicit DebugMessageConstIterator(DebugMessage const & oMessage);
    ~DebugMessageConstIterator() override;

    static std::span<NamedGetter<DebugMessageConstIterator> const> GetRows();

private:
    DebugMessage const & m_oMessage;
    ValueInt32 m_iThreadId;
    ValueInt32 m_iProcessId;
};

} // namespace tsl
