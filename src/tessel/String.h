#pragma once

#include <tessel/Export.h>

#include <compare>
#include <cstdarg>
#include <string>
#include <string_view>
#include <utility>

namespace tsl
{

class Result;
class StringFormator;
class StringValidator;

/// A text of bytes with the library's vocabulary around the standard string.
///
/// There is no null state (ValueString has one); a null `char const *` counts as the empty text. Nothing
/// is known of encodings: positions and lengths are in bytes, and the character classes are those of the
/// process's current locale. Searches return an index or -1. A text holds at most 2,147,483,647 bytes.
///
/// To append takes time in proportion to what is appended, on average; to insert, erase or replace, in proportion to
/// the text.
///
/// A String is used by one thread at a time.
class TSL_EXPORT String
{
public:
    /// The longest text that Format makes, in bytes.
    static constexpr unsigned int FORMAT_LENGTH_MAX = 3998;

    String() = default;
    String(String const & sSource) = default;
    String(String && sSource) noexcept = default;
    String(char const * sSource) : m_sText(sSource ? sSource : "") {}
    String(std::string const & sSource) : m_sText(sSource) {}
    String(std::string && sSource) noexcept : m_sText(std::move(sSource)) {}
    explicit String(std::string_view sSource) : m_sText(sSource) {}

    /// n copies of c.
    String(char c, unsigned int n) : m_sText(n, c) {}

    virtual ~String() = default;

    String & operator=(String const & sSource) = default;
    String & operator=(String && sSource) noexcept = default;
    String & operator=(std::string const & sSource);
    String & operator=(char c);
    String & operator=(char const * sSource);

    void Reserve(unsigned int n) { m_sText.reserve(n); }
    void Clear() { m_sText.clear(); }

    unsigned int GetLength() const { return static_cast<unsigned int>(m_sText.size()); }
    bool IsEmpty() const { return m_sText.empty(); }

    /// The byte at i. At or past the end: the standard out-of-range exception.
    char operator[](unsigned int i) const { return m_sText.at(i); }
    char GetAt(unsigned int i) const { return m_sText.at(i); }

    /// The text with a terminating zero; holds until the next change.
    char const * c_str() const { return m_sText.c_str(); }
    std::string const & s_str() const { return m_sText; }

    static bool IsSpace(char c);
    static bool IsAlnum(char c);
    static bool IsAlpha(char c);
    static bool IsCntrl(char c);
    static bool IsDigit(char c);
    static bool IsGraph(char c);
    static bool IsLower(char c);
    static bool IsUpper(char c);
    static bool IsPrint(char c);
    static bool IsPunct(char c);
    static bool IsXDigit(char c);
    static bool IsAscii(char c);
    static char ToLower(char c);
    static char ToUpper(char c);

    /// The text from pos on, or n bytes of it, fewer at the end. A position past the end: the standard
    /// out-of-range exception. What stands behind a zero byte is dropped.
    String Mid(unsigned int pos) const;
    String Mid(unsigned int pos, unsigned int n) const;

    /// The first n bytes, or all of a shorter text. What stands behind a zero byte is dropped.
    String Left(unsigned int n) const;

    /// The last n bytes, with what stands behind a zero byte dropped; a shorter text whole.
    String Right(unsigned int n) const;

    /// Erase n bytes at the left end, at the right end, or at pos; all or as many as there are. A
    /// position past the end changes nothing.
    void CutLeft(unsigned int n);
    void CutRight(unsigned int n);
    void CutMid(unsigned int pos, unsigned int n);
    void Delete(unsigned int pos, unsigned int n) { CutMid(pos, n); }

    /// Insert the text at pos, or append it if pos is past the end. The form with n takes at most n bytes
    /// and stops at the terminating zero.
    void Insert(unsigned int pos, String const & s);
    void Insert(unsigned int pos, char const * s, unsigned int n);
    void Append(String const & s);
    void Append(char const * s, unsigned int n);

    /// The first occurrence at or after pos.
    int Find(char c, unsigned int pos = 0) const;
    int Find(char const * s, unsigned int pos = 0) const;
    int Find(std::string const & s, unsigned int pos = 0) const;
    int Find(String const & s, unsigned int pos = 0) const;

    /// The first byte at or after pos that is one of the given ones.
    int FindFirstOf(char const * s, unsigned int pos = 0) const;
    int FindFirstOf(String const & s, unsigned int pos = 0) const;

    /// The last occurrence, or the last at or before pos; -1 if pos is past the end.
    int FindReverse(char c) const;
    int FindReverse(char c, unsigned int pos) const;

    /// Replaces the first occurrence at or after pos and returns its index; only this one.
    int Replace(char const * sWhat, char const * sWith, unsigned int pos = 0);
    int Replace(String const & sWhat, String const & sWith, unsigned int pos = 0);

    void Upper();
    void Lower();
    void TrimLeft();
    void TrimRight();
    void Trim();

    /// Negative, 0 or positive, byte by byte.
    int Compare(String const & s) const { return m_sText.compare(s.m_sText); }
    int Compare(std::string const & s) const { return m_sText.compare(s); }
    int Compare(char const * s) const { return m_sText.compare(s ? s : ""); }

    /// Compares the first byte alone, as a signed char: "abc" equals 'a'. The empty text is below all.
    int Compare(char c) const;

    /// Append; numbers are written as printf writes them with %d, %u, %f and %p, which for %f means the
    /// decimal sign of the process's locale.
    String & operator<<(String const & s) { return *this << s.m_sText; }
    String & operator<<(std::string const & s)
    {
        m_sText.append(s);
        return *this;
    }
    String & operator<<(char const * s)
    {
        m_sText.append(s ? s : "");
        return *this;
    }
    String & operator<<(char c)
    {
        m_sText.push_back(c);
        return *this;
    }
    String & operator<<(int i);
    String & operator<<(unsigned int i);
    String & operator<<(float f);
    String & operator<<(double f);
    String & operator<<(void * p);

    String & operator+=(String const & s) { return *this << s; }
    String & operator+=(std::string const & s) { return *this << s; }
    String & operator+=(char const * s) { return *this << s; }
    String & operator+=(char c) { return *this << c; }
    String & operator+=(int i) { return *this << i; }
    String & operator+=(unsigned int i) { return *this << i; }
    String & operator+=(float f) { return *this << f; }
    String & operator+=(double f) { return *this << f; }
    String & operator+=(void * p) { return *this << p; }

    /// Replaces the text by what printf makes of the arguments in the process's locale, up to its first
    /// zero byte. A result of more than FORMAT_LENGTH_MAX bytes is an assertion failure; the text then stays.
    [[gnu::format(printf, 2, 3)]] void Format(char const * sFormat, ...);
    [[gnu::format(printf, 2, 0)]] void FormatArgList(char const * sFormat, va_list oArguments);

    /// Asks the text's validator whether the text may stand.
    [[nodiscard]] Result Validate() const;

    /// Puts the text into the normal form that its formator gives it.
    void Formate();

    /// What Validate and Formate use. A derived text brings its own rules; here nothing is refused and
    /// nothing is changed. Shared objects that live as long as the library.
    virtual StringValidator const & GetValidator() const;
    virtual StringFormator const & GetFormator() const;

private:
    std::string m_sText;
};

/// As Compare of the right operand. A text that is no String may stand on the left as well.
inline bool operator==(String const & sLeft, String const & sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(String const & sLeft, std::string const & sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(String const & sLeft, char const * sRight)
{
    return sLeft.Compare(sRight) == 0;
}
inline bool operator==(String const & sLeft, char cRight)
{
    return sLeft.Compare(cRight) == 0;
}
inline std::strong_ordering operator<=>(String const & sLeft, String const & sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(String const & sLeft, std::string const & sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(String const & sLeft, char const * sRight)
{
    return sLeft.Compare(sRight) <=> 0;
}
inline std::strong_ordering operator<=>(String const & sLeft, char cRight)
{
    return sLeft.Compare(cRight) <=> 0;
}

/// Sums: the left text with the right operand appended. The left one is taken by value: a temporary's memory
/// is reused, and an operator of a program's own for a derived class, on either side, fits better there.
inline String operator+(String sLeft, String const & sRight)
{
    // The left text is moved while it is short, as a literal is in front of a String.
    String sSum(std::move(sLeft));
    sSum << sRight;
    return sSum;
}
inline String operator+(String sLeft, std::string const & sRight)
{
    sLeft << sRight;
    return sLeft;
}
inline String operator+(String sLeft, char const * sRight)
{
    sLeft << sRight;
    return sLeft;
}
inline String operator+(String sLeft, char cRight)
{
    sLeft << cRight;
    return sLeft;
}
inline String operator+(String sLeft, int iRight)
{
    sLeft << iRight;
    return sLeft;
}
inline String operator+(String sLeft, unsigned int iRight)
{
    sLeft << iRight;
    return sLeft;
}
inline String operator+(String sLeft, float fRight)
{
    sLeft << fRight;
    return sLeft;
}
inline String operator+(String sLeft, double fRight)
{
    sLeft << fRight;
    return sLeft;
}
inline String operator+(String sLeft, void * pRight)
{
    sLeft << pRight;
    return sLeft;
}

} // namespace tsl
