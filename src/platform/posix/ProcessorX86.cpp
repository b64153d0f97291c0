#include "platform/Processor.h"

#include "platform/posix/Instructions.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

// What the processors of 32 and of 64 bit have in common.

namespace tsl::Platform
{

bool JumpsTo(std::uintptr_t iCode, std::size_t iSize, std::uintptr_t iTarget)
{
    // Jumps are E9, conditional ones 0F 80 to 0F 8F; the distance counts from the next instruction.
    // Instructions are not decoded: other bytes followed by just this distance are too unlikely to matter.
    constexpr std::size_t JUMP_SIZE = 5;
    for (std::uintptr_t iAt = iCode; iAt + JUMP_SIZE <= iCode + iSize; ++iAt)
    {
        std::uint32_t iDistance = 0;
        std::memcpy(&iDistance, reinterpret_cast<void const *>(iAt + 1), sizeof iDistance);
        int const iFirst = *reinterpret_cast<unsigned char const *>(iAt);
        if (iDistance == static_cast<std::uint32_t>(iTarget - (iAt + JUMP_SIZE))
            && (iFirst == 0xE9 || (iFirst & 0xF0) == 0x80))
            return true;
    }
    return false;
}

void Relax()
{
    __builtin_ia32_pause();
}

} // namespace tsl::Platform
