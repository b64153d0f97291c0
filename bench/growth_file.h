#pragma once

#include <tessel/IniFile.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

namespace growth
{

/// A file in the current directory; the destructor deletes it.
class TemporaryFile
{
public:
    explicit TemporaryFile(std::string const & sContent)
    {
        static int s_iCount = 0;
        m_sName = "bench_growth_" + std::to_string(++s_iCount) + ".ini";
        std::ofstream(m_sName) << sContent;
    }
    ~TemporaryFile() { std::remove(m_sName.c_str()); }
    TemporaryFile(TemporaryFile const &) = delete;
    TemporaryFile & operator=(TemporaryFile const &) = delete;

    std::string const & GetName() const { return m_sName; }

private:
    std::string m_sName;
};

} // namespace growth
