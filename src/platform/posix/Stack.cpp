#include "platform/Stack.h"

#include <algorithm>

#include <execinfo.h>
#include <unistd.h>

namespace tsl::Platform
{

void GetStack(void ** pAddresses, std::size_t iCount)
{
    auto const iFound = ::backtrace(pAddresses, static_cast<int>(iCount));
    std::fill(pAddresses + iFound, pAddresses + iCount, nullptr);
}

void WriteStack(void * const * pAddresses, std::size_t iCount)
{
    auto const iFound = std::find(pAddresses, pAddresses + iCount, nullptr) - pAddresses;
    ::backtrace_symbols_fd(pAddresses, static_cast<int>(iFound), STDERR_FILENO);
}

} // namespace tsl::Platform
