#include <tesselkit/TestFolder.h>

#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <system_error>

namespace tsl
{

namespace
{

namespace fs = std::filesystem;

fs::path MakeFolder()
{
    std::random_device oRandom;
    for (;;)
    {
        fs::path const oPath = fs::temp_directory_path() / ("tessel-test-" + std::to_string(oRandom()));
        if (!fs::create_directory(oPath))
            continue;
        fs::permissions(oPath, fs::perms::owner_all);
        return oPath;
    }
}

} // namespace

TestFolder::TestFolder() : m_oPath(MakeFolder()) {}

TestFolder::~TestFolder()
{
    std::error_code oIgnored; // A folder that stays behind is no reason to fail a test.
    if (!m_oFormer.empty())
        fs::current_path(m_oFormer, oIgnored);
    fs::remove_all(m_oPath, oIgnored);
}

void TestFolder::Enter()
{
    if (m_oFormer.empty())
        m_oFormer = fs::current_path();
    fs::current_path(m_oPath);
}

void TestFolder::WriteFile(std::string const & sName, std::string_view sContent) const
{
    std::ofstream oFile(m_oPath / sName, std::ios::binary | std::ios::trunc);
    oFile.write(sContent.data(), static_cast<std::streamsize>(sContent.size()));
    oFile.close();
    if (!oFile)
        throw fs::filesystem_error(
            "cannot write", m_oPath / sName, std::make_error_code(std::errc::io_error));
}

std::string TestFolder::ReadFile(std::string const & sName) const
{
    std::ifstream oFile(m_oPath / sName, std::ios::binary);
    return {std::istreambuf_iterator<char>(oFile), {}};
}

bool TestFolder::HasFile(std::string const & sName) const
{
    return fs::exists(m_oPath / sName);
}

std::string TestFolder::ReadLog() const
{
    std::regex const oTime(R"((^|\n)\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d )");
    std::string const sLog = std::regex_replace(ReadFile("Logfile.txt"), oTime, "$1T ");
    return std::regex_replace(sLog, std::regex(R"((^|\n)T \d+ \d+ DEB )"), "$1T P DEB ");
}

} // namespace tsl
