#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The time and the blank with which a record begins, such as "13.11.2026 15:08:14 ".
constexpr std::size_t LENGTH_OF_HEAD = 20;

/// Whether a record begins with these bytes. At the end of the bytes or of a line, the time needs no blank.
bool BeginsRecord(std::string_view sText);

enum class RecordKind
{
    eNone,    ///< the bytes before the first time of a log
    eFailure, ///< ERR
    eTrace,   ///< DEB
    eMessage  ///< any other message; its lines have no mark
};

/// "ERR", "DEB", "MSG", or the empty text.
char const * GetKindName(RecordKind eKind);

/// Date and time as the number YYYYMMDDhhmmss. A later time is a larger number.
using LogTime = std::int64_t;

/// Converts "13.11.2026 15:08:14" to "2026-11-13T15:08:14".
std::string GetInternationalTime(std::string_view sTime);

/// One entry of a log. The texts are part of the parsed text, which must outlive it.
struct LogRecord
{
    /// Parses the text. Parts that it does not have stay empty or 0.
    explicit LogRecord(std::string_view sRecord);

    std::string_view sText; ///< all of it, in one line or more, without the last line end
    RecordKind eKind = RecordKind::eNone;
    std::string_view sTime; ///< as in the text; empty without a kind
    LogTime iTime = 0;
    int iProcess = 0; ///< only of a trace, as the next two
    int iThread = 0;
    std::string_view sId;
    std::string_view sBody; ///< the rest

private:
    bool ReadTrace(std::string_view sRest);
};

/// The parts of a failure's line.
struct LoggedFailure
{
    int iNumber = 0;
    std::string_view sText;
    std::string_view sFile;
    int iLine = 0;
};

/// Parses a failure's record: the failure itself, then its causes, nearest first. Empty if it cannot be parsed.
std::vector<LoggedFailure> GetFailures(LogRecord const & oRecord);

/// Parses names and values of a message's record. Empty if they cannot be parsed. A value that contains what looks
/// like the end of a value and another name is split there.
std::vector<std::pair<std::string_view, std::string_view>> GetFields(LogRecord const & oRecord);
