#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

TEST(OSErrors, AreFailuresWhateverTheNumber)
{
    EXPECT_TRUE(OS::FormatError(0).IsError());
    errno = ENOENT;
    EXPECT_EQ(OS::GetLastError(), OS::FormatError(ENOENT));
    EXPECT_EQ(OS::FormatError(ENOENT).GetText(), "No such file or directory");
}

TEST(OSPlaces, AreThoseOfTheProgram)
{
    String sName, sPath, sDirectory;
    EXPECT_TRUE(OS::GetApplicationFileName(sName).IsOk());
    EXPECT_TRUE(OS::GetApplicationFilePath(sPath).IsOk());
    EXPECT_EQ(sName.s_str(), "tessel_tests");
    EXPECT_TRUE(std::filesystem::exists((sPath + "/" + sName).s_str()));

    EXPECT_TRUE(OS::GetWorkingDirectory(sDirectory).IsOk());
    EXPECT_EQ(sDirectory.s_str(), std::filesystem::current_path().string());

    std::filesystem::path const oFormer = std::filesystem::current_path();
    {
        TestProgram const oPlace("Reporter");
        std::filesystem::current_path(oPlace.GetPath());
    }
    sDirectory = "former";
    EXPECT_EQ(OS::GetWorkingDirectory(sDirectory),
        Result(1, "Cannot identify working dir.", OS::FormatError(ENOENT)));
    EXPECT_EQ(sDirectory.s_str(), "former");
    std::filesystem::current_path(oFormer);
}

TEST(ApplicationIni, IsNamedAfterTheProgramWithoutItsEnding)
{
    std::pair<char const *, std::string> const aRows[] = {
        {"tool.exe", "tool"},
        {"a (deleted)", "a (deleted)"},
    };
    for (auto const & [sProgram, sName] : aRows)
    {
        TestProgram const oPlace("Reporter");
        std::filesystem::path const oCopy = oPlace.GetPath() / sProgram;
        std::filesystem::copy_file(std::string(TESSEL_TEST_PROGRAMS) + "/Reporter", oCopy);
        TestProgram const oProgram(oCopy.string());
        oProgram.WriteFile(sName + ".ini", "[A]\n[B]\n[C]\n");
        EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "3 chapters\n") << sProgram;
        EXPECT_EQ(oProgram.Run({"unlink"}).sOutput, sName + "\n") << "its file is gone";
    }
}
