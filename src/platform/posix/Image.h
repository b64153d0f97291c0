#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

struct link_map;

namespace tsl::Platform
{

/// The name of an exported function, with the value under which the tables of a program file list it.
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

/// The program or the shared library that an address of code belongs to. Everything here is safe in a signal
/// handler and takes no lock of the loader. It holds as long as code of the image is being run.
class LoadedImage
{
public:
    enum EKind
    {
        eProgram, ///< the program's own code, and that of ordinary libraries
        eMixed,   ///< the same with an allocator or a runtime library linked into it
        eRuntime, ///< a runtime library: locks and lists that nobody could repair
        eTessel   ///< this library
    };

    LoadedImage() = default;
    explicit LoadedImage(std::uintptr_t iAddress);

    bool Contains(std::uintptr_t iAddress) const { return m_iBegin <= iAddress && iAddress < m_iEnd; }
    EKind GetKind() const { return m_eKind; }
    std::string_view GetFileName() const;

    /// Whether the function that begins at that address is the program's own operator new or delete.
    bool IsAllocator(std::uintptr_t iFunction) const;

    /// Whether the function that begins at that address is exported by the image under one of the names, or is
    /// what such a function ends in a jump to.
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
