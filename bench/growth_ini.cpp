#include "growth.h"

#include "growth_file.h"

using namespace tsl;

namespace
{

/// Opens a file and reads the value of each key in it.
std::function<void()> Read(std::string const & sContent)
{
    return [pFile = std::make_shared<growth::TemporaryFile>(sContent)]
    {
        IniFile oFile;
        growth::Require(oFile.Open(pFile->GetName()).IsOk());
        std::vector<String> vChapters;
        oFile.GetChapters(vChapters);
        for (String const & sChapter : vChapters)
        {
            std::vector<String> vKeys;
            growth::Require(oFile.GetKeys(sChapter, vKeys).IsOk() && !vKeys.empty());
            String sValue;
            for (String const & sKey : vKeys)
                growth::Require(oFile.GetString(sChapter, sKey, sValue) && !sValue.IsEmpty());
        }
    };
}

std::function<void()> ReadChapters(int n)
{
    std::string sContent;
    for (int i = 0; i < n; ++i)
        sContent += "[Chapter" + std::to_string(i) + "]\nKey=value\n";
    return Read(sContent);
}

std::function<void()> ReadKeys(int n)
{
    std::string sContent = "[Chapter]\n";
    for (int i = 0; i < n; ++i)
        sContent += "Key" + std::to_string(i) + "=value\n";
    return Read(sContent);
}

std::function<void()> ReadContinuations(int n)
{
    std::string sContent = "[Chapter]\nKey=value\n";
    for (int i = 0; i < n; ++i)
        sContent += "+=and more\n";
    return Read(sContent);
}

} // namespace

std::vector<growth::Work> growth::GetIniWorks()
{
    return {
        {"ini file with n chapters", Order::eLinearLog, 500, &ReadChapters},
        {"ini file with n keys in a chapter", Order::eLinearLog, 500, &ReadKeys},
        {"ini file with a value of n lines", Order::eLinear, 1000, &ReadContinuations},
    };
}
