#pragma once

#include <tessel/Assertion.h>
#include <tessel/String.h>

#include <cstddef>

namespace tsl
{

/// A text made by a function like vsnprintf. A text that is too long, or a failure of the function, is an
/// assertion failure.
class FormattedText
{
public:
    /// @param sFormat the format, for the text of a failure
    /// @param fPrint called with a buffer and its size; writes and returns the length as vsnprintf does
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
