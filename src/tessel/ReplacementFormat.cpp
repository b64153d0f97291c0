#include "ReplacementFormat.h"

#include "ArgumentList.h"
#include "FloatText.h"
#include "FormattedText.h"
#include "platform/Locale.h"

#include <tessel/Assertion.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

namespace tsl::ReplacementFormat
{

namespace
{

// No wider than what a formatted text may be long.
constexpr unsigned int WIDTH_MAX = String::FORMAT_LENGTH_MAX;

/// Reads a user's format once from front to back and builds the one that printf may see.
class Checker
{
public:
    Checker(ValueString const & sFormat, std::string_view sConversions)
        : m_sFormat(sFormat.c_str()), m_sConversions(sConversions)
    {
    }

    std::string GetChecked()
    {
        while (m_iPosition < m_sFormat.size())
        {
            char const c = Take();
            if (c == '%')
                CheckConversion();
        }
        return m_sChecked;
    }

private:
    void CheckConversion()
    {
        if (Peek() == '%')
        {
            Take();
            return;
        }

        TakeAll("-+ #0");
        CheckNumber();
        if (Peek() == '.')
        {
            Take();
            CheckNumber();
        }
        while (Peek() == 'h' || Peek() == 'l')
            ++m_iPosition;

        if (m_bConverted || m_iPosition == m_sFormat.size()
            || m_sConversions.find(Peek()) == std::string_view::npos)
            Fail();
        m_bConverted = true;
        Take();
    }

    void CheckNumber()
    {
        unsigned int iNumber = 0;
        while (Peek() >= '0' && Peek() <= '9')
        {
            iNumber = iNumber * 10 + static_cast<unsigned int>(Take() - '0');
            if (iNumber > WIDTH_MAX)
                Fail();
        }
    }

    void TakeAll(std::string_view sBytes)
    {
        while (m_iPosition < m_sFormat.size() && sBytes.find(Peek()) != std::string_view::npos)
            Take();
    }

    char Peek() const { return m_iPosition < m_sFormat.size() ? m_sFormat[m_iPosition] : '\0'; }

    char Take()
    {
        m_sChecked += m_sFormat[m_iPosition];
        return m_sFormat[m_iPosition++];
    }

    [[noreturn]] void Fail() const
    {
        XAssertionFailed("false",
            String("ValueConverter : Ungültiger Formatstring! String : \"") + std::string(m_sFormat) + '"');
    }

    std::string_view m_sFormat;
    std::string_view m_sConversions;
    std::string m_sChecked;
    std::size_t m_iPosition = 0;
    bool m_bConverted = false;
};

/// Formats with a format that only the run time knows, and that has been checked. Other locales have other
/// decimal points, and which one the process has is no business of a layout.
void AppendFormatted(ValueString & sOut, char const * sChecked, ...)
{
    va_list oArguments;
    va_start(oArguments, sChecked);
    ArgumentListScope const oScope(oArguments);

    FormattedText const oText(sChecked, [&](char * pBuffer, std::size_t iSize)
        { return Platform::FormatInPlainLocale(pBuffer, iSize, sChecked, oArguments); });
    sOut << oText.c_str();
}

constexpr int DEFAULT_PRECISION = 6;
constexpr std::size_t PRECISION_DIGITS_MAX = 2; // of FloatText::PRECISION_MAX

/// What printf makes of a bare format, in a fraction of its time (R08).
void AppendBareFloat(ValueString & sOut, int iPrecision, float fNumber)
{
    char aText[FloatText::FIXED_LENGTH_MAX];
    sOut << std::string(aText, FloatText::WriteFixed(aText, fNumber, iPrecision));
}

} // namespace

void AppendInteger(ValueString & sOut, ValueString const & sFormat, int iNumber)
{
    // The default format needs neither check nor printf.
    if (sFormat == "%d")
        sOut << iNumber;
    else
        AppendFormatted(sOut, Checker(sFormat, "diuxXoc").GetChecked().c_str(), iNumber);
}

void AppendFloat(ValueString & sOut, ValueString const & sFormat, float fNumber)
{
    int const iPrecision = GetBarePrecision(sFormat.s_str());
    if (iPrecision >= 0)
        AppendBareFloat(sOut, iPrecision, fNumber);
    else
        AppendFormatted(sOut, Checker(sFormat, "fFeEgGaA").GetChecked().c_str(), double{fNumber});
}

void AppendText(ValueString & sOut, ValueString const & sFormat, char const * sText)
{
    // The default format needs no printf, which looks at every byte of a text that is too long.
    if (sFormat != "%s")
        AppendFormatted(sOut, Checker(sFormat, "s").GetChecked().c_str(), sText);
    else if (std::strlen(sText) > String::FORMAT_LENGTH_MAX)
        FormattedText::Fail("%s");
    else
        sOut << sText;
}

int GetBarePrecision(std::string_view sFormat)
{
    if (sFormat == "%f")
        return DEFAULT_PRECISION;
    if (!sFormat.starts_with("%.") || !sFormat.ends_with('f'))
        return -1;

    std::string_view const sDigits = sFormat.substr(2, sFormat.size() - 3);
    if (sDigits.empty() || sDigits.size() > PRECISION_DIGITS_MAX
        || !std::all_of(sDigits.begin(), sDigits.end(), String::IsDigit))
        return -1;

    int iPrecision = 0;
    std::from_chars(sDigits.data(), sDigits.data() + sDigits.size(), iPrecision);
    return iPrecision;
}

} // namespace tsl::ReplacementFormat
