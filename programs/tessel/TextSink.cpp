#include "RecordSink.h"

namespace
{

class TextSink : public RecordSink
{
public:
    TextSink(Output & oOutput, bool bColours) : m_oOutput(oOutput), m_bColours(bColours) {}

    void Begin(LogRecord const & oRecord, Extent) override
    {
        if (m_bColours)
            BeginColoured(oRecord);
        else
            m_oOutput.Write(oRecord.sText);
    }

    void Continue(std::string_view sPiece) override { m_oOutput.Write(sPiece); }

    void End() override { m_oOutput.Write(m_bColours ? "\x1b[0m\n" : "\n"); }

private:
    /// Writes the time faint, all lines of a failure red, and the identifier of a trace blue.
    void BeginColoured(LogRecord const & oRecord)
    {
        std::string_view sRest = oRecord.sText.substr(oRecord.sTime.size());
        if (!oRecord.sTime.empty())
        {
            m_oOutput.Write("\x1b[2m");
            m_oOutput.Write(oRecord.sTime);
            m_oOutput.Write("\x1b[0m");
        }
        if (oRecord.eKind == RecordKind::eFailure)
            m_oOutput.Write("\x1b[31m");
        if (!oRecord.sId.empty())
        {
            auto const iId = static_cast<std::size_t>(oRecord.sId.data() - sRest.data());
            m_oOutput.Write(sRest.substr(0, iId));
            m_oOutput.Write("\x1b[34m");
            m_oOutput.Write(oRecord.sId);
            m_oOutput.Write("\x1b[0m");
            sRest.remove_prefix(iId + oRecord.sId.size());
        }
        m_oOutput.Write(sRest);
    }

    Output & m_oOutput;
    bool m_bColours;
};

class CountSink : public RecordSink
{
public:
    explicit CountSink(Output & oOutput) : m_oOutput(oOutput) {}

    void Begin(LogRecord const &, Extent) override { ++m_iCount; }
    void Continue(std::string_view) override {}
    void End() override {}
    void Finish() override { m_oOutput.Write(std::to_string(m_iCount) + '\n'); }

private:
    Output & m_oOutput;
    std::uint64_t m_iCount = 0;
};

} // namespace

std::unique_ptr<RecordSink> MakeTextSink(Output & oOutput, bool bColours)
{
    return std::make_unique<TextSink>(oOutput, bColours);
}

std::unique_ptr<RecordSink> MakeCountSink(Output & oOutput)
{
    return std::make_unique<CountSink>(oOutput);
}
