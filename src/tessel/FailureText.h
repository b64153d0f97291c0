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

/// A text that is stored without an allocation if it is shorter than 48 bytes, as in most failures (R03).
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
        // Copy the new text before the old one is deleted: it may be part of it.
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

    /// Copies the text and adds a terminating zero.
    static void Copy(std::string_view sText, char * sTarget)
    {
        // Not copy: a null pointer is allowed here, and the texts may overlap.
        std::char_traits<char>::move(sTarget, sText.data(), sText.size());
        sTarget[sText.size()] = '\0';
    }
    /// Copies in blocks of a fixed size, which takes no call of memcpy for most lengths (R03). The last block
    /// may overlap the one before it.
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

/// The text of a failure. The ValueString is created lazily (R03): nobody reads the text of most failures. It
/// then exists as long as this object; later changes of the text assign to it.
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

    /// Any number of threads may call it at the same time.
    ValueString const & GetValue() const
    {
        if (ValueString const * const pValue = m_pValue.load(std::memory_order_acquire))
            return *pValue;

        auto pNew = std::make_unique<ValueString>(MakeValue());
        ValueString * pOther = nullptr;
        if (!m_pValue.compare_exchange_strong(pOther, pNew.get(), std::memory_order_acq_rel))
            return *pOther;
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
