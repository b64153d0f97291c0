#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/String.h>
#include <tessel/Value.h>

#include <compare>
#include <cstdarg>
#include <string>
#include <string_view>

namespace tsl
{

/// A text that can be null. The library's interfaces use it for texts.
///
///     ValueString sName; // null
///     sName << "Ada" << ' ' << 1815;
///     if (!sName.IsNull())
///         std::cout << sName.c_str(); // Ada 1815
///
/// Null is different from empty. An operation that needs a text fails the assertion "!m_bNull" with "Invalid
/// operation. ValueString is NULL" if the value is null, and changes nothing. Assigning and appending make a
/// null value non-null. Operations have the same names as those of String, where they are described. One
/// thread at a time uses an object.
class TSL_EXPORT ValueString : public Described<ValueString, Value>
{
public:
    /// Null.
    ValueString() = default;
    ValueString(ValueString const & sSource) = default;
    /// Moving leaves the source null.
    ValueString(ValueString && sSource) noexcept;
    ValueString(char c, unsigned int n) : m_bNull(false), m_sText(c, n) {}
    ValueString(char const * sSource) : m_bNull(false), m_sText(sSource) {}
    ValueString(std::string const & sSource) : m_bNull(false), m_sText(sSource) {}
    explicit ValueString(std::string_view sSource) : m_bNull(false), m_sText(sSource) {}
    ValueString(String const & sSource) : m_bNull(false), m_sText(sSource) {}

    /// Replace the text. The value is null afterwards only if the right operand was.
    ValueString & operator=(ValueString const & sSource) = default;
    ValueString & operator=(ValueString && sSource) noexcept;
    ValueString & operator=(std::string const & sSource);
    ValueString & operator=(char c);
    ValueString & operator=(char const * sSource);

    ~ValueString() override = default;

    bool IsNull() const override { return m_bNull; }

    /// Empties the text and makes the value null.
    void SetNull() override;

    /// Empties the text and makes the value non-null.
    void Clear();

    ValueConverter const & GetConverter() const override;

    /// A shared null value.
    static ValueString const & Null();

    /// Allocates memory; a null value stays null.
    void Reserve(unsigned int n) { m_sText.Reserve(n); }

    /// Read the text, which must not be null. Pointers and references are valid until the next change.
    unsigned int GetLength() const { return Private::Text(*this).GetLength(); }
    bool IsEmpty() const { return Private::Text(*this).IsEmpty(); }
    char operator[](unsigned int i) const { return Private::Text(*this)[i]; }
    char GetAt(unsigned int i) const { return Private::Text(*this).GetAt(i); }
    char const * c_str() const { return Private::Text(*this).c_str(); }
    std::string const & s_str() const { return Private::Text(*this).s_str(); }
    static bool IsSpace(char c) { return String::IsSpace(c); }

    /// Parts of the text, which must not be null. The result is never null.
    ValueString Mid(unsigned int pos) const { return Private::Text(*this).Mid(pos); }
    ValueString Mid(unsigned int pos, unsigned int n) const { return Private::Text(*this).Mid(pos, n); }
    ValueString Left(unsigned int n) const { return Private::Text(*this).Left(n); }
    ValueString Right(unsigned int n) const { return Private::Text(*this).Right(n); }

    /// Erase bytes of the text, which must not be null.
    void CutLeft(unsigned int n) { Private::Text(*this).CutLeft(n); }
    void CutRight(unsigned int n) { Private::Text(*this).CutRight(n); }
    void CutMid(unsigned int pos, unsigned int n) { Private::Text(*this).CutMid(pos, n); }

    /// Does nothing to a null value, which stays null.
    void Delete(unsigned int pos, unsigned int n) { m_sText.Delete(pos, n); }

    /// Inserts s at pos. Neither this value nor s may be null.
    void Insert(unsigned int pos, ValueString const & s);

    /// Search. This value must not be null; a null argument counts as the empty text.
    int Find(ValueString const & s, unsigned int pos = 0) const
    {
        return Private::Text(*this).Find(s.m_sText, pos);
    }
    int Find(char c, unsigned int pos = 0) const { return Private::Text(*this).Find(c, pos); }
    int Find(char const * s, unsigned int pos = 0) const { return Private::Text(*this).Find(s, pos); }
    int Find(String const & s, unsigned int pos = 0) const { return Private::Text(*this).Find(s, pos); }
    int FindReverse(char c) const { return Private::Text(*this).FindReverse(c); }

    /// Replace the first occurrence. Neither this value nor a ValueString argument may be null.
    int Replace(char const * sWhat, char const * sWith, unsigned int pos = 0)
    {
        return Private::Text(*this).Replace(sWhat, sWith, pos);
    }
    int Replace(ValueString const & sWhat, ValueString const & sWith, unsigned int pos = 0);

    /// Remove white space. The value must not be null.
    void TrimLeft() { Private::Text(*this).TrimLeft(); }
    void TrimRight() { Private::Text(*this).TrimRight(); }
    void Trim() { Private::Text(*this).Trim(); }

    /// Compare. Neither this value nor a ValueString argument may be null.
    int Compare(ValueString const & s) const;
    int Compare(std::string const & s) const { return Private::Text(*this).Compare(s); }
    int Compare(char const * s) const { return Private::Text(*this).Compare(s); }
    int Compare(char c) const { return Private::Text(*this).Compare(c); }

    /// The same as String::Format. Make the value non-null; after a failure it is unchanged.
    [[gnu::format(printf, 2, 3)]] void Format(char const * sFormat, ...);
    [[gnu::format(printf, 2, 0)]] void FormatArgList(char const * sFormat, va_list oArguments);

    /// Append and make the value non-null. A null ValueString as the right operand fails the assertion
    /// "!s.IsNull()".
    ValueString & operator<<(ValueString const & s);
    ValueString & operator<<(std::string const & s) { return Private::Append(*this, s); }
    ValueString & operator<<(char const * s) { return Private::Append(*this, s); }
    ValueString & operator<<(char c) { return Private::Append(*this, c); }
    ValueString & operator<<(int i) { return Private::Append(*this, i); }
    ValueString & operator<<(float f) { return Private::Append(*this, f); }

    /// The same as operator<<.
    ValueString & operator+=(ValueString const & s) { return *this << s; }
    ValueString & operator+=(std::string const & s) { return *this << s; }
    ValueString & operator+=(char const * s) { return *this << s; }
    ValueString & operator+=(char c) { return *this << c; }
    ValueString & operator+=(int i) { return *this << i; }
    ValueString & operator+=(float f) { return *this << f; }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    struct Private
    {
        /// The text of a value that must not be null. A failure reports the line of the call, which is in
        /// this file.
        static String const & Text(ValueString const & s, int iLine = __builtin_LINE())
        {
            if (s.m_bNull) [[unlikely]]
                FailNull("!m_bNull", "src/tessel/ValueString.h", iLine);
            return s.m_sText;
        }
        static String & Text(ValueString & s, int iLine = __builtin_LINE())
        {
            return const_cast<String &>(Text(static_cast<ValueString const &>(s), iLine));
        }

        template<class Part>
        static ValueString & Append(ValueString & s, Part const & oPart)
        {
            s.m_sText << oPart;
            s.m_bNull = false;
            return s;
        }

        [[noreturn]] TSL_EXPORT static void FailNull(char const * sExpression, char const * sFile, int iLine);
    };

    bool m_bNull = true;
    String m_sText;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueString, Value>::GetStaticClassDesc();

/// Compare as ValueString::Compare with the right operand, and with the same requirements. A std::string, a
/// char const * or a char may also be the left operand.
inline bool operator==(ValueString const & sLeft, ValueString const & sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(ValueString const & sLeft, std::string const & sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(ValueString const & sLeft, char const * sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(ValueString const & sLeft, char cRight)
{
    return sLeft.Compare(cRight) == 0;
}
inline std::strong_ordering operator<=>(ValueString const & sLeft, ValueString const & sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(ValueString const & sLeft, std::string const & sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(ValueString const & sLeft, char const * sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(ValueString const & sLeft, char cRight)
{
    return sLeft.Compare(cRight) <=> 0;
}

/// A copy of the left text with the right operand appended. The result is never null; a null left operand
/// counts as empty, a null right one fails as in operator<<.
inline ValueString operator+(ValueString sLeft, ValueString const & sRight)
{
    sLeft << sRight;
    return sLeft;
}
inline ValueString operator+(ValueString sLeft, std::string const & sRight)
{
    sLeft << sRight;
    return sLeft;
}
inline ValueString operator+(ValueString sLeft, char const * sRight)
{
    sLeft << sRight;
    return sLeft;
}
inline ValueString operator+(ValueString sLeft, char cRight)
{
    sLeft << cRight;
    return sLeft;
}
inline ValueString operator+(ValueString sLeft, int iRight)
{
    sLeft << iRight;
    return sLeft;
}
inline ValueString operator+(ValueString sLeft, float fRight)
{
    sLeft << fRight;
    return sLeft;
}

} // namespace tsl
