#include "JsonText.h"
#include "RecordSink.h"

namespace
{

class JsonSink : public RecordSink
{
public:
    explicit JsonSink(Output & oOutput) : m_oOutput(oOutput), m_oText(oOutput) {}

    void Begin(LogRecord const & oRecord, Extent eExtent) override
    {
        m_oOutput.Write("{");
        if (!oRecord.sTime.empty())
            m_oOutput.Write("\"time\":\"" + GetInternationalTime(oRecord.sTime) + "\",\"kind\":\""
                            + GetKindName(oRecord.eKind) + "\",");
        if (oRecord.eKind == RecordKind::eTrace)
            WriteOrigin(oRecord);
        // The first piece of a long record does not have all fields.
        if (oRecord.eKind == RecordKind::eMessage && eExtent == Extent::eWhole)
            WriteFields(oRecord);
        if (oRecord.eKind == RecordKind::eFailure && eExtent == Extent::eWhole)
            WriteFailures(oRecord);
        m_oOutput.Write("\"text\":\"");
        m_oText.Write(oRecord.sBody);
    }

    void Continue(std::string_view sPiece) override { m_oText.Write(sPiece); }

    void End() override
    {
        m_oText.End();
        m_oOutput.Write("\"}\n");
    }

private:
    void WriteOrigin(LogRecord const & oRecord)
    {
        m_oOutput.Write("\"pid\":" + std::to_string(oRecord.iProcess)
                        + ",\"tid\":" + std::to_string(oRecord.iThread) + ",\"id\":");
        WriteJson(m_oOutput, oRecord.sId);
        m_oOutput.Write(",");
    }

    void WriteFields(LogRecord const & oRecord)
    {
        auto const vFields = GetFields(oRecord);
        if (vFields.empty())
            return;
        char const * sSeparator = "\"fields\":{";
        for (auto const & [sName, sValue] : vFields)
        {
            m_oOutput.Write(sSeparator);
            WriteJson(m_oOutput, sName);
            m_oOutput.Write(":");
            WriteJson(m_oOutput, sValue);
            sSeparator = ",";
        }
        m_oOutput.Write("},");
    }

    void WriteFailures(LogRecord const & oRecord)
    {
        auto const vFailures = GetFailures(oRecord);
        if (vFailures.empty())
            return;
        char const * sSeparator = "\"failures\":[";
        for (LoggedFailure const & oFailure : vFailures)
        {
            m_oOutput.Write(sSeparator);
            m_oOutput.Write("{\"number\":" + std::to_string(oFailure.iNumber) + ",\"text\":");
            WriteJson(m_oOutput, oFailure.sText);
            m_oOutput.Write(",\"file\":");
            WriteJson(m_oOutput, oFailure.sFile);
            m_oOutput.Write(",\"line\":" + std::to_string(oFailure.iLine) + "}");
            sSeparator = ",";
        }
        m_oOutput.Write("],");
    }

    Output & m_oOutput;
    JsonText m_oText;
};

} // namespace

std::unique_ptr<RecordSink> MakeJsonSink(Output & oOutput)
{
    return std::make_unique<JsonSink>(oOutput);
}
