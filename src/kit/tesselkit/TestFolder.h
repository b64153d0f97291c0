#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tsl
{

/// An empty folder for a test, which is removed with all that is in it when the object is destroyed. A program that is
/// started there has an ini file and a log file of its own.
///
///     tsl::TestFolder oFolder;
///     oFolder.WriteFile("hello.ini", "[Greeting]\nText=Hi\n");
///     oFolder.Enter();
///     Run("hello");
///     EXPECT_EQ(oFolder.ReadLog(), "T Name='Ann'\n");
///
/// What the system refuses is thrown as std::filesystem::filesystem_error. Separate objects are independent, also on
/// several threads, except that only one at a time may be entered.
class TestFolder
{
public:
    /// The folder is in that of the system for temporary files, and only its owner may read it.
    TestFolder();
    ~TestFolder();
    TestFolder(TestFolder const &) = delete;
    TestFolder & operator=(TestFolder const &) = delete;

    /// The folder, or a file in it.
    std::filesystem::path const & GetPath() const { return m_oPath; }
    std::string GetPath(std::string const & sName) const { return (m_oPath / sName).string(); }

    /// Makes it the current directory of this process until the object is destroyed. The log file that this process has
    /// opened itself stays where it is.
    void Enter();

    /// Files of the folder. One that is not there reads as empty.
    void WriteFile(std::string const & sName, std::string_view sContent) const;
    std::string ReadFile(std::string const & sName) const;
    bool HasFile(std::string const & sName) const;

    /// "Logfile.txt" with "T " for the time of each line, and "P " for process and thread.
    std::string ReadLog() const;

private:
    std::filesystem::path m_oPath;
    std::filesystem::path m_oFormer; // empty unless the folder was entered
};

} // namespace tsl
