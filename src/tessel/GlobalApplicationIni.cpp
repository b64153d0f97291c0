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

/// Not by way of the bus, which does not stand yet when the file is read.
static void ReportBadFile(std::string_view sReason)
{
    // Room for the failures of reading; there may be no memory.
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

    // The standard error stream stands in for a log that cannot be opened, not for one that is full.
    static_cast<void>(Platform::Append(oLog, sLine.data(), sLine.size()));
    Platform::CloseFile(oLog);
}

template<>
constexpr ClassSource CLASS_SOURCE<GlobalApplicationIni>{};
template ClassDescription const &
Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>::GetStaticClassDesc();

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

    // An empty file is always open.
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
