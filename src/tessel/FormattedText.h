#pragma once

#include <tessel/Assertion.h>
#include <tessel/String.h>

#include <cstddef>

namespace tsl
{

/// A text that a relative of printf has made. One that is too long, or that cannot be made, is an assertion
/// failure.
class FormattedText
{
public:
    /// @param sFormat for the report of a failure
    /// @param fPrint writes into a buffer of a size, and answers, as vsnprintf does
    template<class Print>
    FormattedText(char const * sFormat, Print const & fPrint)
    {
        int const i = fPrint(m_aText, sizeof m_aText);
        if (i < 0 || i >= static_cast<int>(sizeof m_aText))
            Fail(sFormat);
    }

    [[noreturn]] static void Fail(char const * sFormat)
    {
        XAssertionFailed("i >= 0",
            String("Buffer overflow. Formatting argList with string as \"") + sFormat + "\" failed.");
    }

    char const * c_str() const { return m_aText; }

private:
    char m_aText[String::FORMAT_LENGTH_MAX + 1];
};

} // namespace tsl
