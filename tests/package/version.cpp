// Prints the version of the headers if the library says the same.

#include <tessel/Version.h>

#include <iostream>
#include <string>

int main()
{
    using tsl::Version;
    std::string const sText = std::to_string(Version::GetMajor()) + "." + std::to_string(Version::GetMinor())
                              + "." + std::to_string(Version::GetPatch());
#if TSL_VERSION_MAJOR >= 1
    if (sText == TSL_VERSION_TEXT && sText == Version::GetText())
        std::cout << sText << '\n';
#endif
}
