#pragma once

#include <tessel/Described.h>
#include <tessel/MessageProcessor.h>
#include <tessel/ValueString.h>

#include <memory>

namespace tsl
{

/// Which file the log is written to, and how. It cannot be copied through Root::Set.
class LogFileProcessorConfig : public Described<LogFileProcessorConfig, MessageProcessorConfig>
{
public:
    LogFileProcessorConfig() = default;

    /// Output plus append.
    int GetOpenMode() const { return m_iOpenMode; }

    /// "Logfile.txt", relative to the current directory.
    ValueString const & GetFileName() const { return m_sFileName; }

protected:
    void DoCopy(Root const & oSource) override;

private:
    int m_iOpenMode = 10;
    ValueString m_sFileName{"Logfile.txt"};
};

extern template ClassDescription const &
Described<LogFileProcessorConfig, MessageProcessorConfig>::GetStaticClassDesc();

/// Appends each message as a line, or several for a Result with a history, to the log file. The text and
/// its line end go to the system in one piece before Process returns, so that nothing is lost in a crash
/// and lines are whole, also if several processes write to one file.
///
/// Any thread may use it. A write that fails, as on a full disk, is not reported, and later ones are not
/// tried. If half a line was written, its last byte is replaced by a line end, so whatever process appends
/// next begins a line of its own. Half a line that was left by a process that was killed meanwhile, or on a
/// system that can replace nothing on a full disk, is ended by the first line of the next process that opens
/// the file; until then, others may go on with it.
class LogFileProcessor : public Described<LogFileProcessor, MessageProcessor>
{
public:
    /// Under which it is registered in MessageProcessorFactory.
    static constexpr char const * CLASS_NAME = "LogFileProcessor";

    LogFileProcessor();
    LogFileProcessor(LogFileProcessor const &) = delete;
    LogFileProcessor & operator=(LogFileProcessor const &) = delete;

    /// Closes the file.
    ~LogFileProcessor() override;

    void Process(Message const & oMessage, Result & oResult) const override;
    MessageProcessorConfig const & GetConfig() const override;

    /// A processor cannot be reconfigured: always an assertion failure.
    [[nodiscard]] Result SetConfig(MessageProcessorConfig const & oConfig) override;

    /// Opens the file, which is made if it is absent. Code 1 if it cannot be opened; never waits, so a
    /// pipe without a reader is such a failure. Success if it is open already.
    [[nodiscard]] Result Open() override;
    void Close() override;

protected:
    void DoCopy(Root const & oSource) override;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

extern template ClassDescription const & Described<LogFileProcessor, MessageProcessor>::GetStaticClassDesc();

} // namespace tsl
