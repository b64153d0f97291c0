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

/// A text of bytes: std::string with the library's operations.
///
///     String sText("Temperature: ");
///     sText << 21 << " C";
///     int const iColon = sText.Find(':'); // 11
///     sText.Replace("Temperature", "t");  // "t: 21 C"
///
/// A text cannot be null (a ValueString can); a null `char const *` counts as the empty text. Positions and
/// lengths are in bytes; encodings are not interpreted. The character classes are those of the current locale
/// of the process. Searches return an index or -1. A text has at most 2,147,483,647 bytes.
///
/// Appending takes time in proportion to the appended text, on average; inserting, erasing and replacing in
/// proportion to the whole text.
///
/// One thread at a time uses a String.
class TSL_EXPORT String
{
public:
    /// The longest text that Format can make, in bytes.
    static constexpr unsigned int FORMAT_LENGTH_MAX = 3998;

    String() = default;
    String(String const & sSource) = default;
    String(String && sSource) noexcept = default;
    /// A copy of the text. Where the argument is a pointer, the text ends at its terminating zero.
    String(char const * sSource) : m_sText(sSource ? sSource : "") {}
    String(std::string const & sSource) : m_sText(sSource) {}
    String(std::string && sSource) noexcept : m_sText(std::move(sSource)) {}
    explicit String(std::string_view sSource) : m_sText(sSource) {}

    /// n copies of c.
    String(char c, unsigned int n) : m_sText(n, c) {}

    virtual ~String() = default;

    String & operator=(String const & sSource) = default;
    String & operator=(String && sSource) noexcept = default;
    /// Assign a copy of the text or a single byte. The argument may be a part of the text itself.
    String & operator=(std::string const & sSource);
    String & operator=(char c);
    String & operator=(char const * sSource);

    /// Allocates memory for n bytes, so that appending up to them does not allocate.
    void Reserve(unsigned int n) { m_sText.reserve(n); }

    /// Makes the text empty. The memory is kept.
    void Clear() { m_sText.clear(); }

    /// The number of bytes, zero bytes included.
    unsigned int GetLength() const { return static_cast<unsigned int>(m_sText.size()); }
    bool IsEmpty() const { return m_sText.empty(); }

    /// The byte at i. Throws std::out_of_range if i is not less than the length.
    char operator[](unsigned int i) const { return m_sText.at(i); }
    char GetAt(unsigned int i) const { return m_sText.at(i); }

    /// The text with a terminating zero. The pointer is valid until the next change.
    char const * c_str() const { return m_sText.c_str(); }

    /// The standard string that holds the text.
    std::string const & s_str() const { return m_sText; }

    /// Character classes and letter case in the current locale of the process. IsAscii: whether the byte is
    /// below 128.
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

    /// The text from pos on, or at most n bytes of it. Throws std::out_of_range if pos is beyond the end. The
    /// result is truncated at its first zero byte.
    String Mid(unsigned int pos) const;
    String Mid(unsigned int pos, unsigned int n) const;

    /// The first n bytes, or the whole text if it is shorter. The result is truncated at its first zero byte.
    String Left(unsigned int n) const;

    /// The last n bytes, truncated at their first zero byte. A text that is shorter than n is returned whole,
    /// zero bytes included.
    String Right(unsigned int n) const;

    /// Erase n bytes at the left end, at the right end, or from pos on; fewer if there are not so many. A
    /// position beyond the end changes nothing. Delete is the same as CutMid.
    void CutLeft(unsigned int n);
    void CutRight(unsigned int n);
    void CutMid(unsigned int pos, unsigned int n);
    void Delete(unsigned int pos, unsigned int n) { CutMid(pos, n); }

    /// Insert the text at pos, or append it if pos is beyond the end. The forms with n use at most n bytes of
    /// s and stop at its terminating zero; a null s changes nothing.
    void Insert(unsigned int pos, String const & s);
    void Insert(unsigned int pos, char const * s, unsigned int n);
    void Append(String const & s);
    void Append(char const * s, unsigned int n);

    /// The index of the first occurrence at or after pos, or -1.
    int Find(char c, unsigned int pos = 0) const;
    int Find(char const * s, unsigned int pos = 0) const;
    int Find(std::string const & s, unsigned int pos = 0) const;
    int Find(String const & s, unsigned int pos = 0) const;

    /// The index of the first byte at or after pos that is one of the bytes of s, or -1.
    int FindFirstOf(char const * s, unsigned int pos = 0) const;
    int FindFirstOf(String const & s, unsigned int pos = 0) const;

    /// The index of the last occurrence, or of the last one at or before pos; -1 if there is none or pos is
    /// beyond the end.
    int FindReverse(char c) const;
    int FindReverse(char c, unsigned int pos) const;

    /// Replaces only the first occurrence at or after pos and returns its index, or -1.
    int Replace(char const * sWhat, char const * sWith, unsigned int pos = 0);
    int Replace(String const & sWhat, String const & sWith, unsigned int pos = 0);

    /// Convert all letters, in the current locale. The Trim operations remove white space.
    void Upper();
    void Lower();
    void TrimLeft();
    void TrimRight();
    void Trim();

    /// Compare byte by byte, as unsigned numbers. Negative, 0 or positive.
    int Compare(String const & s) const { return m_sText.compare(s.m_sText); }
    int Compare(std::string const & s) const { return m_sText.compare(s); }
    int Compare(char const * s) const { return m_sText.compare(s ? s : ""); }

    /// Compares only the first byte, as a signed char: "abc" equals 'a'. The empty text is less than any c.
    /// -1, 0 or 1.
    int Compare(char c) const;

    /// Append the argument, and return this object. Numbers and addresses are written as printf writes them
    /// with %d, %u, %f and %p; %f uses the decimal point of the current locale.
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

    /// The same as operator<<.
    String & operator+=(String const & s) { return *this << s; }
    String & operator+=(std::string const & s) { return *this << s; }
    String & operator+=(char const * s) { return *this << s; }
    String & operator+=(char c) { return *this << c; }
    String & operator+=(int i) { return *this << i; }
    String & operator+=(unsigned int i) { return *this << i; }
    String & operator+=(float f) { return *this << f; }
    String & operator+=(double f) { return *this << f; }
    String & operator+=(void * p) { return *this << p; }

    /// Replaces the text by what printf makes of the arguments in the current locale, truncated at the first
    /// zero byte. A null format, and a result of more than FORMAT_LENGTH_MAX bytes, are assertion failures
    /// that leave the text unchanged. The arguments may refer to the text itself.
    [[gnu::format(printf, 2, 3)]] void Format(char const * sFormat, ...);
    [[gnu::format(printf, 2, 0)]] void FormatArgList(char const * sFormat, va_list oArguments);

    /// Checks the text with its validator.
    [[nodiscard]] Result Validate() const;

    /// Normalises the text with its formator.
    void Formate();

    /// The objects that Validate and Formate use. A derived class overrides them with its own rules; these
    /// accept every text and change nothing. They are shared, and valid until the library is unloaded.
    virtual StringValidator const & GetValidator() const;
    virtual StringFormator const & GetFormator() const;

private:
    std::string m_sText;
};

/// Compare as String::Compare with the right operand. A std::string, a char const * or a char may also be the
/// left operand.
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

/// A copy of the left text with the right operand appended. The left operand is passed by value for two
/// reasons: the memory of a temporary is reused, and a program's own operator for a derived class, on either
/// side, is a better match.
inline String operator+(String sLeft, String const & sRight)
{
    // Moved before it grows: a left text that was made of a literal is short and cheap to move.
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
