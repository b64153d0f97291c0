#pragma once

#include <tessel/ValueString.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tsl
{

/// Bytes that need no allocation while they are as few as in most failures.
class ShortText
{
public:
    explicit ShortText(std::string_view sText = {}) : m_iLength(sText.size())
    {
        if (IsLong(sText)) [[unlikely]]
            m_sLong = CopyLong(sText);
        else
            CopyShort(sText);
    }

    void Set(std::string_view sText)
    {
        // The old text is kept until the new one is copied, which may be part of it.
        std::unique_ptr<char[]> sLong = IsLong(sText) ? CopyLong(sText) : nullptr;
        if (!sLong)
            Copy(sText, m_aShort);
        m_sLong = std::move(sLong);
        m_iLength = sText.size();
    }

    char const * c_str() const { return m_sLong ? m_sLong.get() : m_aShort; }
    std::string_view Get() const { return {c_str(), m_iLength}; }

private:
    static bool IsLong(std::string_view sText) { return sText.size() >= sizeof m_aShort; }

    /// With a terminating zero.
    static void Copy(std::string_view sText, char * sTarget)
    {
        // Not copy, which is for texts that have an address and do not overlap.
        std::char_traits<char>::move(sTarget, sText.data(), sText.size());
        sTarget[sText.size()] = '\0';
    }
    /// In blocks, the last of which may overlap the one before it: most lengths then need no call (R03).
    void CopyShort(std::string_view sText)
    {
        constexpr std::size_t BLOCK = 16;
        static_assert(sizeof m_aShort == 3 * BLOCK);
        if (sText.size() < BLOCK)
            return Copy(sText, m_aShort);

        std::memcpy(m_aShort, sText.data(), BLOCK);
        if (sText.size() > 2 * BLOCK)
            std::memcpy(m_aShort + BLOCK, sText.data() + BLOCK, BLOCK);
        std::memcpy(m_aShort + sText.size() - BLOCK, sText.data() + sText.size() - BLOCK, BLOCK);
        m_aShort[sText.size()] = '\0';
    }

    static std::unique_ptr<char[]> CopyLong(std::string_view sText)
    {
        std::unique_ptr<char[]> sCopy(new char[sText.size() + 1]);
        Copy(sText, sCopy.get());
        return sCopy;
    }

    std::size_t m_iLength;
    char m_aShort[48];
    std::unique_ptr<char[]> m_sLong;
};

/// The text of a failure. Most failures are tested, passed on and forgotten, so it becomes a value only when
/// somebody asks for one; that value then stays, whatever the text becomes.
class FailureText
{
public:
    FailureText() = default;
    explicit FailureText(std::string_view sText) : m_oBytes(sText), m_bNull(false) {}
    explicit FailureText(ValueString const & sText) { Set(sText); }
    ~FailureText() { delete m_pValue.load(std::memory_order_relaxed); }
    FailureText(FailureText const &) = delete;
    FailureText & operator=(FailureText const & oSource)
    {
        Set(oSource.m_oBytes.Get(), oSource.m_bNull);
        return *this;
    }

    void Set(std::string_view sText, bool bNull = false)
    {
        m_oBytes.Set(sText);
        m_bNull = bNull;
        if (ValueString * const pValue = m_pValue.load(std::memory_order_relaxed))
            *pValue = MakeValue();
    }
    void Set(ValueString const & sText)
    {
        bool const bNull = sText.IsNull();
        Set(bNull ? std::string_view() : std::string_view(sText.s_str()), bNull);
    }

    /// Any number of threads may ask.
    ValueString const & GetValue() const
    {
        if (ValueString const * const pValue = m_pValue.load(std::memory_order_acquire))
            return *pValue;

        auto pNew = std::make_unique<ValueString>(MakeValue());
        ValueString * pFaster = nullptr;
        if (!m_pValue.compare_exchange_strong(pFaster, pNew.get(), std::memory_order_acq_rel))
            return *pFaster;
        return *pNew.release();
    }

    bool operator==(FailureText const & oOther) const
    {
        return m_bNull == oOther.m_bNull && m_oBytes.Get() == oOther.m_oBytes.Get();
    }

private:
    ValueString MakeValue() const { return m_bNull ? ValueString() : ValueString(m_oBytes.Get()); }

    ShortText m_oBytes;
    bool m_bNull = true;
    mutable std::atomic<ValueString *> m_pValue{nullptr};
};

} // namespace tsl
