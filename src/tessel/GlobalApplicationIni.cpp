#include "GlobalApplicationIni.h"

#include "BusSilence.h"
#include "platform/Files.h"

#include <tessel/Exception.h>
#include <tessel/Support.h>
#include <tessel/ValueString.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string_view>

namespace tsl
{

template class Singleton<GlobalApplicationIni>;

static constexpr char const * ERROR_LOG_NAME = "error_opening_inifile.log";

/// Does not use the bus, which does not exist yet when the file is read.
static void ReportBadFile(std::string_view sReason)
{
    // On the stack, since memory may have run out. Large enough for the failures of reading.
    char aLine[1024];
    int const iPrinted = std::snprintf(aLine, sizeof aLine, "Error opening inifile: %.*s\n",
        static_cast<int>(std::min(sReason.size(), sizeof aLine / 2)), sReason.data());
    std::string_view const sLine(aLine, static_cast<std::size_t>(iPrinted));

    Platform::File oLog;
    if (Platform::OpenForAppend(ERROR_LOG_NAME, oLog) != 0)
    {
        Platform::WriteToStandardError(sLine);
        return;
    }

    // A failed write is ignored: the standard error stream replaces only a log that cannot be opened.
    static_cast<void>(Platform::Append(oLog, sLine.data(), sLine.size()));
    Platform::CloseFile(oLog);
}

template<>
constexpr ClassSource CLASS_SOURCE<GlobalApplicationIni>{};
template<>
ClassDescription const &
Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

GlobalApplicationIni & GlobalApplicationIni::Instance()
{
    static GlobalApplicationIni & oRef = Singleton<GlobalApplicationIni>::Instance(&CreateSingletonInstance);
    return oRef;
}

GlobalApplicationIni::GlobalApplicationIni()
{
    String const sName = Support::GetAppIniFileName();
    try
    {
        Result const oResult = m_oIniFile.Open(sName, SIZE_MAX_READ);
        if (oResult.IsOk())
            return;
        if (oResult.GetErrorCode() != ERR::eNotFound)
            ReportBadFile(oResult.GetText().s_str());
    }
    catch (Exception const & oException)
    {
        ReportBadFile(oException.GetText());
    }
    catch (std::exception const & oException)
    {
        ReportBadFile(oException.what());
    }

    // Opening an empty file cannot fail.
    static_cast<void>(m_oIniFile.OpenEmpty());
}

GlobalApplicationIni::~GlobalApplicationIni()
{
    m_oIniFile.Close();
}

GlobalApplicationIni * GlobalApplicationIni::CreateSingletonInstance()
{
    BusSilence const oScope;
    return new GlobalApplicationIni;
}

} // namespace tsl
