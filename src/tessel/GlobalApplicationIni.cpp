#include "GlobalApplicationIni.h"

#include "BusSilence.h"
#include "Platform.h"

#include <tessel/Support.h>
#include <tessel/ValueString.h>

namespace tsl
{

template class Singleton<GlobalApplicationIni>;

static constexpr char const * ERROR_LOG_NAME = "error_opening_inifile.log";

/// Not by way of the bus, which does not stand yet when the file is read.
static void ReportBadFile(Result const & oFailure)
{
    std::string const sLine = "Error opening inifile: " + oFailure.GetText().s_str() + '\n';

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

ClassDescription const & GlobalApplicationIni::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & GlobalApplicationIni::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<GlobalApplicationIni>(
        &Singleton<GlobalApplicationIni>::GetStaticClassDesc(), ClassDescription::eConcrete, nullptr);
    return oDescription;
}

GlobalApplicationIni & GlobalApplicationIni::Instance()
{
    static GlobalApplicationIni & oRef = Singleton<GlobalApplicationIni>::Instance(&CreateSingletonInstance);
    return oRef;
}

GlobalApplicationIni::GlobalApplicationIni()
{
    Result const oResult = m_oIniFile.Open(Support::GetAppIniFileName());
    if (oResult.IsOk())
        return;

    // An empty file is always open.
    static_cast<void>(m_oIniFile.OpenEmpty());
    if (oResult.GetErrorCode() != ERR::eNotFound)
        ReportBadFile(oResult);
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
