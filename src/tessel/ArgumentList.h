#pragma once

#include <cstdarg>

namespace tsl
{

/// Calls va_end for a started argument list at the end of the scope, also after an exception.
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
