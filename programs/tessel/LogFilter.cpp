#include "LogFilter.h"

#include <algorithm>

namespace
{

template<class Wanted, class Found>
bool IsWanted(std::vector<Wanted> const & vWanted, Found const & oFound)
{
    return vWanted.empty() || std::find(vWanted.begin(), vWanted.end(), oFound) != vWanted.end();
}

bool HasPart(LoggedFailure const & oFailure, std::string_view sName, std::string_view sValue)
{
    if (sName == "Number")
        return std::to_string(oFailure.iNumber) == sValue;
    if (sName == "Line")
        return std::to_string(oFailure.iLine) == sValue;
    return (sName == "Text" && oFailure.sText == sValue) || (sName == "File" && oFailure.sFile == sValue);
}

bool HasFields(LogRecord const & oRecord, std::vector<std::pair<std::string, std::string>> const & vWanted)
{
    auto const oFields = GetFields(oRecord);
    return std::all_of(vWanted.begin(), vWanted.end(),
        [&](auto const & oWanted)
        {
            return std::any_of(oFields.begin(), oFields.end(),
                [&](auto const & oField)
                { return oField.first == oWanted.first && oField.second == oWanted.second; });
        });
}

/// Whether one of the record's failures has all of the wanted fields.
bool HasFailure(LogRecord const & oRecord, std::vector<std::pair<std::string, std::string>> const & vWanted)
{
    auto const vFailures = GetFailures(oRecord);
    return std::any_of(vFailures.begin(), vFailures.end(),
        [&](LoggedFailure const & oFailure)
        {
            return std::all_of(vWanted.begin(), vWanted.end(),
                [&](auto const & oWanted) { return HasPart(oFailure, oWanted.first, oWanted.second); });
        });
}

} // namespace

bool LogFilter::Selects(LogRecord const & oRecord) const
{
    bool const bTimes =
        iSince != std::numeric_limits<LogTime>::min() || iUntil != std::numeric_limits<LogTime>::max();
    if (bTimes && (oRecord.sTime.empty() || oRecord.iTime < iSince || oRecord.iTime > iUntil))
        return false;
    if (!IsWanted(vKinds, oRecord.eKind))
        return false;

    bool const bOfTraces = !vIds.empty() || !vProcesses.empty() || !vThreads.empty();
    if (bOfTraces
        && (oRecord.eKind != RecordKind::eTrace || !IsWanted(vIds, oRecord.sId)
            || !IsWanted(vProcesses, oRecord.iProcess) || !IsWanted(vThreads, oRecord.iThread)))
        return false;

    if (!HasPatterns(oRecord.sText))
        return false;
    if (vFields.empty())
        return true;
    return oRecord.eKind == RecordKind::eFailure
               ? HasFailure(oRecord, vFields)
               : oRecord.eKind == RecordKind::eMessage && HasFields(oRecord, vFields);
}

bool LogFilter::HasPatterns(std::string_view sText) const
{
    return std::all_of(vPatterns.begin(), vPatterns.end(),
        [&](auto const & pPattern) { return pPattern->Match(sText, 0, m_oMatches) > 0; });
}
