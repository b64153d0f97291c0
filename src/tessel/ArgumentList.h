#pragma once

#include <cstdarg>

namespace tsl
{

/// Ends a started argument list with the scope, whichever way it is left.
class ArgumentListScope
{
public:
    explicit ArgumentListScope(va_list & oArguments) : m_oArguments(oArguments) {}
    ~ArgumentListScope() { va_end(m_oArguments); }
    ArgumentListScope(ArgumentListScope const &) = delete;
    ArgumentListScope & operator=(ArgumentListScope const &) = delete;

private:
    va_list & m_oArguments;
};

} // namespace tsl
