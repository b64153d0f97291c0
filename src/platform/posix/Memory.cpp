#include "platform/Memory.h"

#include <cerrno>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace tsl::Platform
{

void DiscardContent(void * pMemory, std::size_t iSize)
{
    auto const iPage = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    auto const iFirst = reinterpret_cast<std::uintptr_t>(pMemory);
    std::uintptr_t const iBegin = (iFirst + iPage - 1) / iPage * iPage;
    std::uintptr_t const iEnd = (iFirst + iSize) / iPage * iPage;
    int const iError = errno;
    if (iBegin < iEnd)
        ::madvise(reinterpret_cast<void *>(iBegin), iEnd - iBegin, MADV_DONTNEED);
    errno = iError;
}

} // namespace tsl::Platform
