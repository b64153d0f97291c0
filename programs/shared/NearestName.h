#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The name that was probably meant; empty if none is close. The case of letters does not matter.
std::string GetNearestName(std::string_view sName, std::vector<std::string> const & vNames);

/// A question for the end of a message, such as " Did you mean '--follow'?"; empty if no name is close.
std::string AskForNearest(std::string_view sName, std::vector<std::string> const & vNames);
