#include "ResultHistoryText.h"

#include <tessel/Result.h>
#include <tessel/String.h>
#include <tessel/ValueString.h>

namespace tsl
{

String & AppendResultHistory(Result const & oResult, String & s, EHistoryText eText)
{
    ValueString sText("");
    for (int n = oResult.GetHistorySize() - 1; n >= 0; --n)
    {
        oResult.GetHistory(n).AddAsString(sText);
        s << "\nHistory " << n + 1 << ": " << sText.s_str();
        // The text is fixed: a closing quote without an opening one, and no semicolon after the last two
        // entries.
        s << (n > 1 ? "'; " : "'");
        if (eText == EHistoryText::eSingle)
            sText.Clear();
    }

    oResult.AddAsString(sText);
    return s << "\nHistory 0: " << sText.s_str();
}

} // namespace tsl
