#pragma once

#include <string>
#include <vector>

/// What the launcher of a job asks of the operating system. A function that can fail returns the system's error
/// number, 0 for success.
namespace LaunchSystem
{

/// A path by which this process and its children can execute its own program.
std::string GetOwnProgram();

/// Makes a file that is in memory only, if the system has such files, and lasts as long as this process.
[[nodiscard]] int WriteToMemory(std::string const & sContent, std::string & sName);

/// The file that a job reads as its standard input: an empty one for an empty name, the one of this process for "yes".
std::string GetInputFile(std::string const & sName);

/// What starts the shell of the system with a command.
std::vector<std::string> GetShellWords(std::string const & sCommand);

/// Whether the program could be started in that folder. A name without a slash is looked for in the folders of sPath,
/// or those of this process's search path if it is empty.
[[nodiscard]] int FindProgram(
    std::string const & sProgram, std::string const & sFolder, std::string const & sPath);

/// Does nothing for an empty name.
[[nodiscard]] int EnterFolder(std::string const & sFolder);

[[nodiscard]] int UseInput(std::string const & sFile);

/// Goes on as another program, looked for in the search path, or waits for it and ends as it has ended. Returns only
/// if it cannot be started.
[[nodiscard]] int Become(
    std::vector<std::string> const & vWords, std::vector<std::string> const & vEnvironment);

/// What a shell would end with if a program cannot be started.
int GetExitCode(int iError);

} // namespace LaunchSystem
