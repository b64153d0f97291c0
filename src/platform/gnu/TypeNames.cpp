#include "platform/TypeNames.h"

#include <cstdlib>
#include <memory>

#include <cxxabi.h>

namespace tsl::Platform
{

std::string DecodeTypeName(char const * sTypeName)
{
    int iStatus = 0;
    std::unique_ptr<char, void (*)(void *)> const sDecoded(
        abi::__cxa_demangle(sTypeName, nullptr, nullptr, &iStatus), &std::free);
    return sDecoded ? sDecoded.get() : sTypeName;
}

} // namespace tsl::Platform
