#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The time and the blank with which a record begins, such as "13.11.2026 15:08:14 ".
constexpr std::size_t LENGTH_OF_HEAD = 20;

/// Whether a record begins with these bytes. A time at the end of all bytes, or of a line, needs no blank.
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

/// A time of day as a number, YYYYMMDDhhmmss; such numbers are in the order of the times.
using LogTime = std::int64_t;

/// "13.11.2026 15:08:14" as "2026-11-13T15:08:14".
std::string GetInternationalTime(std::string_view sTime);

/// One entry of a log. The texts belong to the reader.
struct LogRecord
{
    /// All parts that the text has are filled in.
    explicit LogRecord(std::string_view sRecord);

    std::string_view sText; ///< all of it, in one line or more, without the last line end
    RecordKind eKind = RecordKind::eNone;
    std::string_view sTime; ///< as in the text; empty without a kind
    LogTime iTime = 0;
    int iProcess = 0; ///< this and the next ones of a trace only
    int iThread = 0;
    std::string_view sId;
    std::string_view sBody; ///< what stands behind all that

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

/// What a failure's record tells: the failure itself and then what has caused it, nearest first. Empty if it cannot
/// be read.
std::vector<LoggedFailure> GetFailures(LogRecord const & oRecord);

/// Names and values of a message's record. Empty if they cannot be read; a value that looks like the end of a value
/// and the next name is taken for that.
std::vector<std::pair<std::string_view, std::string_view>> GetFields(LogRecord const & oRecord);
