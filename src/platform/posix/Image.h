#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

struct link_map;

namespace tsl::Platform
{

/// The name of an exported function, with its hash as in the table DT_GNU_HASH.
struct ExportedName
{
    consteval ExportedName(char const * sTheName) : sName(sTheName)
    {
        for (char const c : sName)
            iHash = iHash * 33 + static_cast<unsigned char>(c);
    }

    std::string_view sName;
    std::uint32_t iHash = 5381;
};

/// The program or shared library that a code address belongs to. Everything here is safe in a signal handler
/// and takes no lock of the loader. An object is valid as long as the image cannot be unloaded, because its
/// code is running.
class LoadedImage
{
public:
    enum EKind
    {
        eProgram, ///< the program's own code, or an ordinary library
        eMixed,   ///< the same, with an allocator or a runtime library linked into it
        eRuntime, ///< a runtime library, whose locks and lists nobody could repair
        eTessel   ///< this library
    };

    LoadedImage() = default;
    explicit LoadedImage(std::uintptr_t iAddress);

    bool Contains(std::uintptr_t iAddress) const { return m_iBegin <= iAddress && iAddress < m_iEnd; }
    EKind GetKind() const { return m_eKind; }
    std::string_view GetFileName() const;

    /// Whether the function at that address is the program's own operator new or delete.
    bool IsAllocator(std::uintptr_t iFunction) const;

    /// Whether the image exports the function at that address under one of the names, or exports a function
    /// of such a name that jumps to that address.
    bool Exports(std::uintptr_t iFunction, std::span<ExportedName const> oNames) const;

private:
    EKind FindKind() const;
    bool HasAny(std::span<ExportedName const> oNames) const;

    std::uintptr_t m_iBegin = 0;
    std::uintptr_t m_iEnd = 0;
    link_map const * m_pMap = nullptr;
    EKind m_eKind = eProgram;
    bool m_bHasAllocator = false;
};

} // namespace tsl::Platform
