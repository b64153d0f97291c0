#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

/// What this program asks of the operating system beyond the library and the standard library. A function that can
/// fail returns the system's error number, 0 for success.
namespace System
{

/// Makes a write that nobody can take fail, instead of ending the program.
void IgnoreWriteSignals();

/// Writes all of it to the standard output.
[[nodiscard]] int WriteOutput(std::string_view sText);

/// Whether the error number says that nobody reads the output any more.
bool IsBrokenPipe(int iError);

bool IsOutputTerminal();

/// Waits so long, or until nobody reads the output any more; false then.
bool WaitWithOutput(std::chrono::milliseconds iDuration);

/// Gives a file new content in one step: whoever opens it sees the old one or the new one as a whole. The mode stays,
/// and the owner where the system allows it. After a failure the file is as it was.
[[nodiscard]] int ReplaceFile(std::filesystem::path const & oOld, std::filesystem::path const & oNew);

/// Creates a file beside the other one, which only its owner may read, and writes the content to the disk. After a
/// failure there is none, nor if the other one must not be written.
[[nodiscard]] int WriteBeside(
    std::filesystem::path const & oFile, std::string_view sContent, std::filesystem::path & oBeside);

/// A file or stream that is read. It is closed with the object.
class InputFile
{
public:
    InputFile() = default;
    ~InputFile() { Close(); }
    InputFile(InputFile const &) = delete;
    InputFile & operator=(InputFile const &) = delete;

    [[nodiscard]] int Open(char const * sName);
    void UseStandardInput();
    void Close();
    bool IsOpen() const { return m_iHandle >= 0; }

    /// Reads up to iSize bytes; iRead is 0 at the end.
    [[nodiscard]] int Read(char * pBuffer, std::size_t iSize, std::size_t & iRead);

    /// Reads the first bytes, wherever Read is.
    std::size_t ReadHead(char * pBuffer, std::size_t iSize) const;

    /// The bytes that the file has now.
    std::uint64_t GetSize() const;

    /// Whether the name stands for another file by now; false if there is none.
    bool IsReplaced(char const * sName) const;

    /// Read begins anew.
    void Rewind();

private:
    int m_iHandle = -1;
};

} // namespace System
