#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Files and folders. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// Between the folders of a path.
extern char const PATH_SEPARATOR;

[[nodiscard]] int GetWorkingDirectory(std::string & sPath);

/// An open file. It is closed by CloseFile and not inherited by child processes.
struct File
{
    std::intptr_t iHandle = -1;
    bool bSignals = false; ///< a write that fails may raise a signal as well
    bool bRegular = false; ///< opened for appending, and no pipe or device

    bool IsOpen() const { return iHandle != -1; }
};

/// Opens a file for writing at its end, made if it is absent. Never waits: a pipe without a reader fails.
/// No write to it ends the program by a signal, unless the process limits the size of files later on.
[[nodiscard]] int OpenForAppend(char const * sName, File & oFile);

/// Appends a line with its end. To a regular file it is one call of the system; if that takes a part of the
/// line only, as on a full disk, the part is ended as a line in the place of its last byte.
[[nodiscard]] int Append(File const & oFile, char const * pBytes, std::size_t iCount);

/// Whether the last line of a regular file has no end. False if the file cannot be read.
bool EndsInTornLine(File const & oFile);

/// Opens a regular file or a directory (which then fails to be read). Never waits: whatever else has the
/// name cannot be opened.
[[nodiscard]] int OpenForRead(char const * sName, File & oFile);

/// Reads up to iCount bytes; iRead is 0 at the end of the file.
[[nodiscard]] int Read(File const & oFile, char * pBytes, std::size_t iCount, std::size_t & iRead);

/// Does nothing to a file that is not open.
void CloseFile(File & oFile);

/// Writes the text to the standard error stream.
void WriteToStandardError(std::string_view sText);

} // namespace tsl::Platform
