#pragma once

#include "platform/windows/System.h"

#include <cstdint>
#include <utility>

namespace tsl::Platform
{

/// Owns a handle of the system. Null means none.
class Handle
{
public:
    Handle() = default;
    explicit Handle(HANDLE hTheHandle) : m_h(hTheHandle == INVALID_HANDLE_VALUE ? nullptr : hTheHandle) {}
    Handle(Handle && oSource) noexcept : m_h(std::exchange(oSource.m_h, nullptr)) {}
    Handle & operator=(Handle && oSource) noexcept
    {
        std::swap(m_h, oSource.m_h);
        return *this;
    }
    ~Handle()
    {
        if (m_h)
            ::CloseHandle(m_h);
    }

    explicit operator bool() const { return m_h != nullptr; }
    HANDLE Get() const { return m_h; }
    HANDLE Release() { return std::exchange(m_h, nullptr); }

private:
    HANDLE m_h = nullptr;
};

/// A handle that is stored as a number.
inline HANDLE ToHandle(std::intptr_t iHandle)
{
    return reinterpret_cast<HANDLE>(iHandle);
}
inline std::intptr_t ToNumber(HANDLE hHandle)
{
    return reinterpret_cast<std::intptr_t>(hHandle);
}

/// The system's error number of the calling thread.
inline int GetSystemError()
{
    return static_cast<int>(::GetLastError());
}

} // namespace tsl::Platform
