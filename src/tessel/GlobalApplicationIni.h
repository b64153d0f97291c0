#pragma once

#include <tessel/Described.h>
#include <tessel/IniFile.h>
#include <tessel/SingletonTemplate.h>

#include <cstdint>

namespace tsl
{

/// Owner of the application's ini file, which is read once, while the library loads.
///
/// No file is normal and silent. A file with an error counts for nothing as a whole, and a line is
/// appended to "error_opening_inifile.log", or written to the standard error stream if that fails. So it is
/// with a file of more than SIZE_MAX_READ bytes, and with one that there is not enough memory for.
class GlobalApplicationIni : public Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>
{
public:
    /// Counted as they are read, whatever size the system tells.
    static constexpr std::uint64_t SIZE_MAX_READ = 64 * 1024 * 1024;

    ~GlobalApplicationIni() override;

    static GlobalApplicationIni & Instance();

    /// Always open.
    IniFile const & GetIniFile() const { return m_oIniFile; }

private:
    GlobalApplicationIni();

    static GlobalApplicationIni * CreateSingletonInstance();

    IniFile m_oIniFile;
};

extern template ClassDescription const &
Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>::GetStaticClassDesc();

extern template class Singleton<GlobalApplicationIni>;

} // namespace tsl
