#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

/// What this program needs of the operating system besides the library and the standard library. A function that
/// can fail returns the system's error number, 0 for success.
namespace System
{

/// From now on a write that nobody reads fails, and does not end the program.
void IgnoreWriteSignals();

/// Writes all of it to the standard output.
[[nodiscard]] int WriteOutput(std::string_view sText);

/// Whether the error number means that nobody reads the output any more.
bool IsBrokenPipe(int iError);

bool IsOutputTerminal();

/// Waits for the duration. Returns false early if nobody reads the output any more.
bool WaitWithOutput(std::chrono::milliseconds iDuration);

/// Replaces a file by another one in one step: whoever opens it reads the old content or the new one as a whole.
/// The mode is kept, and the owner where the system allows it. After a failure the file is unchanged.
[[nodiscard]] int ReplaceFile(std::filesystem::path const & oOld, std::filesystem::path const & oNew);

/// Creates a file beside oFile that only its owner may read, and writes the content to the disk. Fails if this
/// program may not write oFile. After a failure there is no new file.
[[nodiscard]] int WriteBeside(
    std::filesystem::path const & oFile, std::string_view sContent, std::filesystem::path & oBeside);

/// An open file or stream for reading. The destructor closes it.
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

    /// Reads the first bytes of the file; Read continues at its own position.
    std::size_t ReadHead(char * pBuffer, std::size_t iSize) const;

    /// The present size of the file in bytes.
    std::uint64_t GetSize() const;

    /// Whether the name is that of another file by now; false if there is no such file.
    bool IsReplaced(char const * sName) const;

    /// The next Read begins at the start of the file.
    void Rewind();

private:
    int m_iHandle = -1;
};

} // namespace System
