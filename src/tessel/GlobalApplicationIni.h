#pragma once

#include <tessel/Described.h>
#include <tessel/IniFile.h>
#include <tessel/SingletonTemplate.h>

#include <cstdint>

namespace tsl
{

/// Owns the program's ini file, which is read once, while the library is loaded.
///
/// A missing file is normal and not reported. A file is ignored as a whole if it has an error, has more than
/// SIZE_MAX_READ bytes, or needs more memory than there is. A line is then appended to "error_opening_inifile.log",
/// or written to the standard error stream if the log cannot be opened.
class GlobalApplicationIni : public Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>
{
public:
    /// Bytes that are read at most; the size that the system reports does not count.
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

template<>
ClassDescription const &
Described<GlobalApplicationIni, Singleton<GlobalApplicationIni>>::GetStaticClassDesc();

TSL_EXTERN_TEMPLATE(class Singleton<GlobalApplicationIni>);

} // namespace tsl
