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

/// A line of trace text, with the place in the source, the thread and the process that it comes from.
///
/// One thread fills a message in; after that any number may read it. Log points send it, so a program seldom makes
/// one itself:
///
///     tsl::DebugMessage oMessage("Connection lost");
///     oMessage.SetIdentifier("Network");
///     tsl::Support::DispatchMessage(oMessage);
class TSL_EXPORT DebugMessage : public Described<DebugMessage, Message>
{
public:
    /// Carries the calling thread and process; all else is null.
    DebugMessage();
    explicit DebugMessage(ValueString const & sText);
    DebugMessage(DebugMessage const & oSource) = default;
    DebugMessage & operator=(DebugMessage const & oSource) = default;

    ~DebugMessage() override = default;

    /// All texts are copied; a null pointer sets the element to null.
    void SetText(String const & sText);
    void SetFile(char const * sFile);

    /// Counted from 1.
    void SetLine(int iLine);

    /// The name of the log point.
    void SetIdentifier(char const * sIdentifier);
    void SetThreadId(unsigned long iThreadId);
    void SetProcessId(int iProcessId);

    /// The references hold as long as the message; the values are null until they are set.
    ValueString const & GetText() const { return m_sText; }
    ValueString const & GetFile() const { return m_sFile; }
    ValueString const & GetIdentifier() const { return m_sIdentifier; }
    ValueInt32 const & GetLine() const { return m_iLine; }

    /// The system's numbers; those of the constructing thread until they are set.
    unsigned long const & GetThreadId() const { return m_iThreadId; }
    int const & GetProcessId() const { return m_iProcessId; }

    /// A copy with the same thread and process ids; the caller deletes it.
    DebugMessage * GetClone() const;

protected:
    /// The elements are "Pid", "Tid", "Id", "Text", "File", "Line".
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

template<>
TSL_EXPORT ClassDescription const & Described<DebugMessage, Message>::GetStaticClassDesc();

/// Iterates over the elements of a DebugMessage, which must outlive the iterator. It is used by one thread at a
/// time. Access before the first or after the last element is an assertion failure.
class TSL_EXPORT DebugMessageConstIterator : public NamedValueIterator<DebugMessageConstIterator>
{
public:
    /// Is at the end.
    explicit DebugMessageConstIterator(DebugMessage const & oMessage);
    ~DebugMessageConstIterator() override;

    /// Name and getter of each element.
    static std::span<NamedGetter<DebugMessageConstIterator> const> GetRows();

private:
    DebugMessage const & m_oMessage;
    ValueInt32 m_iThreadId;
    ValueInt32 m_iProcessId;
};

} // namespace tsl
