#pragma once

#include <string>

/// The names of types as the compiler stores them.
namespace tsl::Platform
{

/// The name as it is in the source, of a name from std::type_info.
std::string DecodeTypeName(char const * sTypeName);

} // namespace tsl::Platform
