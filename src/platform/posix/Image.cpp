#include "platform/posix/Image.h"

#include "platform/posix/Instructions.h"

#include <algorithm>
#include <iterator>

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

namespace tsl::Platform
{

namespace
{

// What the file names of runtime libraries begin with, including sanitizers and allocators.
constexpr std::string_view RUNTIME_FILES[] = {"ld-", "ld.", "libasan.", "libatomic.", "libc++", "libc-",
    "libc.", "libc_malloc", "libclang_rt.", "libdl.", "libdl-", "libgcc_s.", "libgomp.", "libhwasan.",
    "libjemalloc", "liblsan.", "libmimalloc", "libnsl.", "libnss_", "libomp.", "libpthread", "libresolv",
    "librt.", "librt-", "libstdc++", "libtbbmalloc", "libtcmalloc", "libtsan.", "libubsan.", "libunwind",
    "linux-gate", "linux-vdso"};

// An image that exports one of these has an allocator or a runtime library linked into it.
constexpr ExportedName RUNTIME_NAMES[] = {"malloc", "free", "__cxa_throw", "__cxa_allocate_exception",
    "_Unwind_RaiseException", "_Unwind_Resume", "pthread_mutex_lock", "dlopen"};

// Operators new and delete, which a program may replace.
constexpr ExportedName ALLOCATORS[] = {"_Znwm", "_ZnwmRKSt9nothrow_t", "_ZnwmSt11align_val_t",
    "_ZnwmSt11align_val_tRKSt9nothrow_t", "_Znam", "_ZnamRKSt9nothrow_t", "_ZnamSt11align_val_t",
    "_ZnamSt11align_val_tRKSt9nothrow_t", "_ZdlPv", "_ZdlPvm", "_ZdlPvRKSt9nothrow_t",
    "_ZdlPvSt11align_val_t", "_ZdlPvmSt11align_val_t", "_ZdaPv", "_ZdaPvm", "_ZdaPvRKSt9nothrow_t",
    "_ZdaPvSt11align_val_t", "_ZdaPvmSt11align_val_t",
    // of 32 bit
    "_Znwj", "_ZnwjRKSt9nothrow_t", "_ZnwjSt11align_val_t", "_ZnwjSt11align_val_tRKSt9nothrow_t", "_Znaj",
    "_ZnajRKSt9nothrow_t", "_ZnajSt11align_val_t", "_ZnajSt11align_val_tRKSt9nothrow_t", "_ZdlPvj",
    "_ZdlPvjSt11align_val_t", "_ZdaPvj", "_ZdaPvjSt11align_val_t"};

/// The hash table of the symbols that an image exports (DT_GNU_HASH), as the loader uses it.
class ExportTable
{
public:
    explicit ExportTable(link_map const & oMap) : m_iBase(oMap.l_addr)
    {
        for (ElfW(Dyn) const * pEntry = oMap.l_ld; pEntry && pEntry->d_tag != DT_NULL; ++pEntry)
            switch (pEntry->d_tag)
            {
            case DT_GNU_HASH:
                ReadHash(GetAddress(*pEntry));
                break;
            case DT_SYMTAB:
                m_pSymbols = reinterpret_cast<ElfW(Sym) const *>(GetAddress(*pEntry));
                break;
            case DT_STRTAB:
                m_pNames = reinterpret_cast<char const *>(GetAddress(*pEntry));
                break;
            default:
                break;
            }
    }

    /// False if the image has only a table of an older format.
    bool IsKnown() const { return m_pBuckets && m_pSymbols && m_pNames; }

    /// Calls fIsIt with the address and the size of each symbol of that name, until it returns true.
    template<class Function>
    bool AnyOf(ExportedName const & oName, Function const & fIsIt) const
    {
        constexpr std::uint32_t iBits = 8 * sizeof(ElfW(Addr));
        ElfW(Addr) const iWord = m_pFilter[oName.iHash / iBits % m_iFilterSize];
        ElfW(Addr) const iMask =
            ElfW(Addr){1} << oName.iHash % iBits | ElfW(Addr){1} << (oName.iHash >> m_iFilterShift) % iBits;
        if ((iWord & iMask) != iMask)
            return false;

        std::uint32_t iSymbol = m_pBuckets[oName.iHash % m_iBuckets];
        if (iSymbol < m_iFirstSymbol)
            return false;
        for (;; ++iSymbol)
        {
            // The lowest bit of an entry marks the end of a chain.
            std::uint32_t const iHash = m_pChains[iSymbol - m_iFirstSymbol];
            if ((iHash | 1) == (oName.iHash | 1) && IsDefined(iSymbol, oName)
                && fIsIt(m_iBase + m_pSymbols[iSymbol].st_value, m_pSymbols[iSymbol].st_size))
                return true;
            if (iHash & 1)
                return false;
        }
    }

private:
    std::uintptr_t GetAddress(ElfW(Dyn) const & oEntry) const
    {
        // The loader has already added the base, unless the table is read-only.
        return oEntry.d_un.d_ptr < m_iBase ? m_iBase + oEntry.d_un.d_ptr : oEntry.d_un.d_ptr;
    }

    void ReadHash(std::uintptr_t iTable)
    {
        auto const pHeader = reinterpret_cast<std::uint32_t const *>(iTable);
        m_iBuckets = pHeader[0];
        m_iFirstSymbol = pHeader[1];
        m_iFilterSize = pHeader[2];
        m_iFilterShift = pHeader[3];
        m_pFilter = reinterpret_cast<ElfW(Addr) const *>(pHeader + 4);
        if (m_iBuckets == 0 || m_iFilterSize == 0)
            return;
        m_pBuckets = reinterpret_cast<std::uint32_t const *>(m_pFilter + m_iFilterSize);
        m_pChains = m_pBuckets + m_iBuckets;
    }

    bool IsDefined(std::uint32_t iSymbol, ExportedName const & oName) const
    {
        ElfW(Sym) const & oSymbol = m_pSymbols[iSymbol];
        return oSymbol.st_shndx != SHN_UNDEF && m_pNames + oSymbol.st_name == oName.sName;
    }

    ElfW(Addr) m_iBase;
    ElfW(Sym) const * m_pSymbols = nullptr;
    char const * m_pNames = nullptr;
    std::uint32_t m_iBuckets = 0;
    std::uint32_t m_iFirstSymbol = 0;
    std::uint32_t m_iFilterSize = 0;
    std::uint32_t m_iFilterShift = 0;
    ElfW(Addr) const * m_pFilter = nullptr;
    std::uint32_t const * m_pBuckets = nullptr;
    std::uint32_t const * m_pChains = nullptr;
};

/// An address in this library.
std::uintptr_t GetOwnAddress()
{
    return reinterpret_cast<std::uintptr_t>(&GetOwnAddress);
}

} // namespace

LoadedImage::LoadedImage(std::uintptr_t iAddress)
{
    // Code outside of any image, such as code generated at run time, counts as the program's own.
    dl_find_object oFound = {};
    if (::_dl_find_object(reinterpret_cast<void *>(iAddress), &oFound) != 0)
        return;
    m_iBegin = reinterpret_cast<std::uintptr_t>(oFound.dlfo_map_start);
    m_iEnd = reinterpret_cast<std::uintptr_t>(oFound.dlfo_map_end);
    m_pMap = oFound.dlfo_link_map;
    m_eKind = FindKind();
    m_bHasAllocator = m_eKind == eProgram && HasAny(ALLOCATORS);
}

std::string_view LoadedImage::GetFileName() const
{
    std::string_view const sPath = m_pMap ? m_pMap->l_name : "";
    return sPath.substr(sPath.rfind('/') + 1);
}

LoadedImage::EKind LoadedImage::FindKind() const
{
    if (Contains(GetOwnAddress()))
        return eTessel;

    std::string_view const sFile = GetFileName();
    if (std::any_of(std::begin(RUNTIME_FILES), std::end(RUNTIME_FILES),
            [sFile](std::string_view sBegin) { return sFile.starts_with(sBegin); }))
        return eRuntime;
    return HasAny(RUNTIME_NAMES) ? eMixed : eProgram;
}

bool LoadedImage::HasAny(std::span<ExportedName const> oNames) const
{
    // An unknown table counts as containing the names, which is the safe answer.
    ExportTable const oTable(*m_pMap);
    return !oTable.IsKnown()
           || std::any_of(oNames.begin(), oNames.end(),
               [&](ExportedName const & oName)
               { return oTable.AnyOf(oName, [](std::uintptr_t, std::size_t) { return true; }); });
}

bool LoadedImage::IsAllocator(std::uintptr_t iFunction) const
{
    return m_bHasAllocator && Exports(iFunction, ALLOCATORS);
}

bool LoadedImage::Exports(std::uintptr_t iFunction, std::span<ExportedName const> oNames) const
{
    if (!m_pMap)
        return false;
    ExportTable const oTable(*m_pMap);
    return oTable.IsKnown()
           && std::any_of(oNames.begin(), oNames.end(),
               [&](ExportedName const & oName)
               {
                   return oTable.AnyOf(oName, [=](std::uintptr_t iFound, std::size_t iSize)
                       { return iFound == iFunction || JumpsTo(iFound, iSize, iFunction); });
               });
}

} // namespace tsl::Platform
