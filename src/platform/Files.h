#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Files and folders. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// Separates the folders of a path.
extern char const PATH_SEPARATOR;

[[nodiscard]] int GetWorkingDirectory(std::string & sPath);

/// An open file. The owner closes it by CloseFile. Child processes do not inherit it.
struct File
{
    std::intptr_t iHandle = -1;
    bool bSignals = false; ///< a failing write may raise a signal as well
    bool bRegular = false; ///< a regular file that was opened for appending

    bool IsOpen() const { return iHandle != -1; }
};

/// Opens a file for writing at its end and creates it if it is absent. Never waits: a pipe without a reader
/// fails. No write to it raises a signal that ends the program, unless the process sets a limit for the size
/// of files after this call.
[[nodiscard]] int OpenForAppend(char const * sName, File & oFile);

/// Appends a line, which contains its line end. A regular file gets it in one system call. If that call
/// writes only a part, as on a full disk, the last byte of the part is overwritten by a line end.
[[nodiscard]] int Append(File const & oFile, char const * pBytes, std::size_t iCount);

/// Whether the last line of a regular file has no line end. False if the file cannot be read.
bool EndsInTornLine(File const & oFile);

/// Opens a regular file, or a directory, which then fails to be read. Never waits: a pipe, a socket or a
/// device fails.
[[nodiscard]] int OpenForRead(char const * sName, File & oFile);

/// Reads up to iCount bytes. iRead is 0 at the end of the file.
[[nodiscard]] int Read(File const & oFile, char * pBytes, std::size_t iCount, std::size_t & iRead);

/// Does nothing to a file that is not open.
void CloseFile(File & oFile);

/// Writes the text to the standard error stream.
void WriteToStandardError(std::string_view sText);

} // namespace tsl::Platform
