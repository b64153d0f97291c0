#pragma once

#include <string>

/// Names of types.
namespace tsl::Platform
{

/// Demangles a name from std::type_info. A name that cannot be demangled is returned as it is.
std::string DecodeTypeName(char const * sTypeName);

} // namespace tsl::Platform
