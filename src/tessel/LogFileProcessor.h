#pragma once

#include <tessel/Described.h>
#include <tessel/MessageProcessor.h>
#include <tessel/ValueString.h>

#include <memory>

namespace tsl
{

/// The file that the log is written to, and how it is opened. Root::Set is an assertion failure.
class LogFileProcessorConfig : public Described<LogFileProcessorConfig, MessageProcessorConfig>
{
public:
    LogFileProcessorConfig() = default;

    /// Bits: output (2) and append (8).
    int GetOpenMode() const { return m_iOpenMode; }

    /// "Logfile.txt", relative to the current directory.
    ValueString const & GetFileName() const { return m_sFileName; }

protected:
    void DoCopy(Root const & oSource) override;

private:
    int m_iOpenMode = 10;
    ValueString m_sFileName{"Logfile.txt"};
};

template<>
ClassDescription const & Described<LogFileProcessorConfig, MessageProcessorConfig>::GetStaticClassDesc();

/// Appends each message to the log file as one line, or as several for a Result with a history. The text and its
/// line end are passed to the system in one write before Process returns. So nothing is lost in a crash, and lines
/// are not mixed, also if several processes write to one file.
///
/// Any thread may use it. If a write fails, as on a full disk, that is not reported, and no later write is tried
/// until the next Open. If only a part of a line was written, its last byte is replaced by a line end, so the next
/// writer begins a new line. A partial line remains if the process was killed while it wrote, or if the system
/// cannot replace a byte on a full disk. The first line of the next process that opens the file then ends it; until
/// then, another process may append to it.
class LogFileProcessor : public Described<LogFileProcessor, MessageProcessor>
{
public:
    /// Its key in MessageProcessorFactory.
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

    /// Opens the file and creates it if it does not exist. Code 1 if it cannot be opened; the
    /// history then has its name and the system's reason. Never waits: a pipe
    /// without a reader cannot be opened. Success if it is open already.
    [[nodiscard]] Result Open() override;
    void Close() override;

protected:
    void DoCopy(Root const & oSource) override;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

template<>
ClassDescription const & Described<LogFileProcessor, MessageProcessor>::GetStaticClassDesc();

} // namespace tsl
