#include <tessel/String.h>

#include "ArgumentList.h"
#include "FormattedText.h"
#include "LastingObject.h"

#include <tessel/Result.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/StringFormator.h>
#include <tessel/StringValidator.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace tsl
{

/// The argument for the runtime library's character functions, which must not be negative.
static int AsByte(char c)
{
    return static_cast<unsigned char>(c);
}

static int AsIndex(std::size_t iPosition)
{
    return iPosition == std::string::npos ? -1 : static_cast<int>(iPosition);
}

/// The text up to its first zero byte.
static String UpToZero(std::string_view sText)
{
    return String(sText.substr(0, sText.find('\0')));
}

static std::string_view AsView(char const * sText)
{
    return sText ? sText : "";
}

static int FindText(std::string const & sText, std::string_view sWhat, unsigned int pos)
{
    return AsIndex(sText.find(sWhat, pos));
}

static int ReplaceText(std::string & sText, std::string_view sWhat, std::string_view sWith, unsigned int pos)
{
    int const iFound = FindText(sText, sWhat, pos);
    if (iFound >= 0)
        sText.replace(static_cast<std::size_t>(iFound), sWhat.size(), sWith);
    return iFound;
}

static void InsertText(std::string & sText, unsigned int pos, std::string_view sAdded)
{
    sText.insert(std::min<std::size_t>(pos, sText.size()), sAdded);
}

String & String::operator=(std::string const & sSource)
{
    m_sText = sSource;
    return *this;
}

String & String::operator=(char c)
{
    m_sText = c;
    return *this;
}

String & String::operator=(char const * sSource)
{
    m_sText = AsView(sSource);
    return *this;
}

bool String::IsSpace(char c)
{
    // Fast path: printable ASCII is no space in any locale, so the locale is not used (R07, R08).
    bool const bPrints = c > ' ' && c <= '~';
    return !bPrints && std::isspace(AsByte(c)) != 0;
}
bool String::IsAlnum(char c)
{
    return std::isalnum(AsByte(c)) != 0;
}
bool String::IsAlpha(char c)
{
    return std::isalpha(AsByte(c)) != 0;
}
bool String::IsCntrl(char c)
{
    return std::iscntrl(AsByte(c)) != 0;
}
bool String::IsDigit(char c)
{
    return std::isdigit(AsByte(c)) != 0;
}
bool String::IsGraph(char c)
{
    return std::isgraph(AsByte(c)) != 0;
}
bool String::IsLower(char c)
{
    return std::islower(AsByte(c)) != 0;
}
bool String::IsUpper(char c)
{
    return std::isupper(AsByte(c)) != 0;
}
bool String::IsPrint(char c)
{
    return std::isprint(AsByte(c)) != 0;
}
bool String::IsPunct(char c)
{
    return std::ispunct(AsByte(c)) != 0;
}
bool String::IsXDigit(char c)
{
    return std::isxdigit(AsByte(c)) != 0;
}
bool String::IsAscii(char c)
{
    return AsByte(c) < 128;
}
char String::ToLower(char c)
{
    return IsUpper(c) ? static_cast<char>(std::tolower(AsByte(c))) : c;
}
char String::ToUpper(char c)
{
    return IsLower(c) ? static_cast<char>(std::toupper(AsByte(c))) : c;
}

String String::Mid(unsigned int pos) const
{
    return UpToZero(std::string_view(m_sText).substr(pos));
}

String String::Mid(unsigned int pos, unsigned int n) const
{
    return UpToZero(std::string_view(m_sText).substr(pos, n));
}

String String::Left(unsigned int n) const
{
    return UpToZero(std::string_view(m_sText).substr(0, n));
}

String String::Right(unsigned int n) const
{
    if (n > m_sText.size())
        return m_sText;
    return UpToZero(std::string_view(m_sText).substr(m_sText.size() - n));
}

void String::CutLeft(unsigned int n)
{
    m_sText.erase(0, n);
}

void String::CutRight(unsigned int n)
{
    m_sText.resize(m_sText.size() - std::min<std::size_t>(n, m_sText.size()));
}

void String::CutMid(unsigned int pos, unsigned int n)
{
    if (pos <= m_sText.size())
        m_sText.erase(pos, n);
}

void String::Insert(unsigned int pos, String const & s)
{
    InsertText(m_sText, pos, s.m_sText);
}

void String::Insert(unsigned int pos, char const * s, unsigned int n)
{
    if (!s)
        return;

    void const * const pZero = std::memchr(s, '\0', n);
    std::size_t const iLength = pZero ? static_cast<std::size_t>(static_cast<char const *>(pZero) - s) : n;
    InsertText(m_sText, pos, std::string_view(s, iLength));
}

void String::Append(String const & s)
{
    m_sText.append(s.m_sText);
}

void String::Append(char const * s, unsigned int n)
{
    Insert(GetLength() + 1, s, n);
}

int String::Find(char c, unsigned int pos) const
{
    return AsIndex(m_sText.find(c, pos));
}
int String::Find(char const * s, unsigned int pos) const
{
    return FindText(m_sText, AsView(s), pos);
}
int String::Find(std::string const & s, unsigned int pos) const
{
    return FindText(m_sText, s, pos);
}
int String::Find(String const & s, unsigned int pos) const
{
    return FindText(m_sText, s.m_sText, pos);
}

int String::FindFirstOf(char const * s, unsigned int pos) const
{
    return AsIndex(m_sText.find_first_of(AsView(s), pos));
}

int String::FindFirstOf(String const & s, unsigned int pos) const
{
    return AsIndex(m_sText.find_first_of(s.m_sText, pos));
}

int String::FindReverse(char c) const
{
    return AsIndex(m_sText.rfind(c));
}

int String::FindReverse(char c, unsigned int pos) const
{
    return pos > m_sText.size() ? -1 : AsIndex(m_sText.rfind(c, pos));
}

int String::Replace(char const * sWhat, char const * sWith, unsigned int pos)
{
    return ReplaceText(m_sText, AsView(sWhat), AsView(sWith), pos);
}

int String::Replace(String const & sWhat, String const & sWith, unsigned int pos)
{
    return ReplaceText(m_sText, sWhat.m_sText, sWith.m_sText, pos);
}

void String::Upper()
{
    std::transform(m_sText.begin(), m_sText.end(), m_sText.begin(), ToUpper);
}
void String::Lower()
{
    std::transform(m_sText.begin(), m_sText.end(), m_sText.begin(), ToLower);
}

void String::TrimLeft()
{
    std::size_t iSpaces = 0;
    while (iSpaces < m_sText.size() && IsSpace(m_sText[iSpaces]))
        ++iSpaces;
    if (iSpaces > 0)
        m_sText.erase(0, iSpaces);
}

void String::TrimRight()
{
    while (!m_sText.empty() && IsSpace(m_sText.back()))
        m_sText.pop_back();
}

void String::Trim()
{
    TrimLeft();
    TrimRight();
}

int String::Compare(char c) const
{
    if (m_sText.empty())
        return -1;

    int const iFirst = static_cast<signed char>(m_sText.front());
    int const iOther = static_cast<signed char>(c);
    return iFirst == iOther ? 0 : iFirst < iOther ? -1 : 1;
}

/// Appends a whole number in decimal.
template<class Number>
static void AppendNumber(std::string & sText, Number iNumber)
{
    char aDigits[16];
    auto const oEnd = std::to_chars(std::begin(aDigits), std::end(aDigits), iNumber);
    sText.append(aDigits, static_cast<std::size_t>(oEnd.ptr - aDigits));
}

String & String::operator<<(int i)
{
    AppendNumber(m_sText, i);
    return *this;
}

String & String::operator<<(unsigned int i)
{
    AppendNumber(m_sText, i);
    return *this;
}

String & String::operator<<(float f)
{
    return *this << static_cast<double>(f);
}

String & String::operator<<(double f)
{
    String sNumber;
    sNumber.Format("%f", f);
    return *this << sNumber;
}

String & String::operator<<(void * p)
{
    String sAddress;
    sAddress.Format("%p", p);
    return *this << sAddress;
}

void String::Format(char const * sFormat, ...)
{
    va_list oArguments;
    va_start(oArguments, sFormat);
    ArgumentListScope const oScope(oArguments);
    FormatArgList(sFormat, oArguments);
}

void String::FormatArgList(char const * sFormat, va_list oArguments)
{
    FormattedText const oText(sFormat, [&](char * pBuffer, std::size_t iSize)
        { return sFormat ? std::vsnprintf(pBuffer, iSize, sFormat, oArguments) : -1; });
    m_sText = oText.c_str();
}

Result String::Validate() const
{
    return GetValidator().Validate(*this);
}

void String::Formate()
{
    GetFormator().Format(*this, *this);
}

StringValidator const & String::GetValidator() const
{
    return LastingObject<StringValidator>();
}

StringFormator const & String::GetFormator() const
{
    return LastingObject<StringFormator>();
}

} // namespace tsl
