// A user of the companion library alone.

#include <patternmatcher/PatternMatcher.h>

#include <iostream>
#include <string>

int main()
{
    tsl::PatternMatcher const oDigits("[0-9]+");
    std::string const sText = "line 42";
    oDigits.Match(sText, 0);
    std::cout << oDigits.substr(sText, 0) << '\n';
}
