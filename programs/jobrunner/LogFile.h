#pragma once

#include <cstdint>

/// The log file that the library has opened in this process.
class LogFile
{
public:
    /// False if there is none, or it can be seen at once that it takes nothing.
    bool Find();

    /// Its bytes. False if it is no file with a length, such as a pipe.
    bool GetSize(std::int64_t & iSize) const;

private:
    int m_iDescriptor = -1;
};
