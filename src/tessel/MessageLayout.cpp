#include <tessel/MessageLayout.h>

#include "MessageElements.h"
#include "ResultHistoryText.h"
#include "platform/Calendar.h"
#include "platform/Clock.h"

#include <tessel/DebugMessage.h>
#include <tessel/ResultMessage.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <typeinfo>

namespace tsl
{

namespace
{

/// The last time stamp of a thread, kept so that the local time is computed once a second (R02).
struct Timestamp
{
    std::int64_t iTime = std::numeric_limits<std::int64_t>::min();
    char sText[64] = "";
};

/// In local time in every zone, which TimeZone cannot do: it knows only offsets of whole hours.
void FormatTimestamp(Timestamp & oTimestamp)
{
    std::tm oLocal{};
    // A time that cannot be converted is printed with zero elements; a line without a time would be worse.
    static_cast<void>(Platform::ToLocalTime(oTimestamp.iTime, oLocal));
    std::snprintf(oTimestamp.sText, sizeof oTimestamp.sText, "%02d.%02d.%02d %02d:%02d:%02d ", oLocal.tm_mday,
        oLocal.tm_mon + 1, oLocal.tm_year + Platform::YEAR_BASE, oLocal.tm_hour, oLocal.tm_min,
        oLocal.tm_sec);
}

/// Process and thread of the last trace that this thread has formatted, nearly always its own (R02).
struct Origin
{
    int iProcessId = 0;
    unsigned long iThreadId = 0;
    char sText[64] = "";
};

/// Appends process id, thread id and kind of a trace, each followed by a blank.
void AppendOrigin(DebugMessage const & oMessage, String & sText)
{
    static thread_local Origin oLast;
    bool const bSame =
        oLast.iProcessId == oMessage.GetProcessId() && oLast.iThreadId == oMessage.GetThreadId();
    if (!bSame || oLast.sText[0] == '\0') [[unlikely]]
    {
        oLast.iProcessId = oMessage.GetProcessId();
        oLast.iThreadId = oMessage.GetThreadId();
        std::snprintf(oLast.sText, sizeof oLast.sText, "%d %d DEB ", oLast.iProcessId,
            static_cast<int>(oLast.iThreadId));
    }
    sText << oLast.sText;
}

void AppendText(ValueString const & sSource, String & sText)
{
    if (!sSource.IsNull())
        sText << sSource.s_str();
}

} // namespace

void DefaultMessageLayout::FormatMessage(Message const & oMessage, String & sText) const
{
    // Fast path: nearly all messages are traces, and comparing the exact type is much faster than dynamic_cast
    // (R02).
    if (typeid(oMessage) == typeid(DebugMessage))
        Format(static_cast<DebugMessage const &>(oMessage), sText);
    else if (auto const * const pResultMessage = dynamic_cast<ResultMessage const *>(&oMessage))
        Format(*pResultMessage, sText);
    else if (auto const * const pDebugMessage = dynamic_cast<DebugMessage const *>(&oMessage))
        Format(*pDebugMessage, sText);
    else
        Format(oMessage, sText);
}

void DefaultMessageLayout::Format(DebugMessage const & oMessage, String & sText) const
{
    AddTimestamp(sText);
    AppendOrigin(oMessage, sText);
    AppendText(oMessage.GetIdentifier(), sText);
    sText << ' ';
    AppendText(oMessage.GetText(), sText);
}

void DefaultMessageLayout::Format(ResultMessage const & oMessage, String & sText) const
{
    AddTimestamp(sText);
    sText << "ERR ";
    FormatValue(oMessage.GetResult(), sText);
}

void DefaultMessageLayout::Format(Message const & oMessage, String & sText) const
{
    AddTimestamp(sText);
    AppendElements(oMessage, sText, [&](Value const & oValue) { FormatValue(oValue, sText); });
}

void DefaultMessageLayout::FormatValue(Value const & oValue, String & sText) const
{
    if (auto const * const pResult = dynamic_cast<Result const *>(&oValue))
    {
        AppendResultHistory(*pResult, sText, EHistoryText::eSingle);
        return;
    }

    ValueString sValue("");
    sText << oValue.AddAsString(sValue).s_str();
}

void DefaultMessageLayout::AddTimestamp(String & sText) const
{
    static thread_local Timestamp oLast;
    std::int64_t const iNow = Platform::GetTime();
    if (iNow != oLast.iTime) [[unlikely]]
    {
        oLast.iTime = iNow;
        FormatTimestamp(oLast);
    }
    sText << oLast.sText;
}

} // namespace tsl
