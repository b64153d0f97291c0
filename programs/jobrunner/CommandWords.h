#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Splits a command at white space outside of double quotes, which are dropped, as tsl::CmdLine does.
std::vector<std::string> SplitCommand(std::string_view sCommand);

/// What only a shell understands in the command, such as "&&" or ">", outside of double quotes; empty if there is
/// nothing.
std::string FindShellWord(std::string_view sCommand);
