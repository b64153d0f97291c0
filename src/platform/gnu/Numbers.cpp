#include "platform/Numbers.h"

#include <charconv>

#ifndef __cpp_lib_to_chars
#include <cerrno>
#include <cmath>
#include <string>

#include <locale.h>
#include <stdlib.h>
#endif

namespace tsl::Platform
{

#ifdef __cpp_lib_to_chars

std::errc ReadNumber(char const * pBegin, char const * pEnd, double & fNumber)
{
    return std::from_chars(pBegin, pEnd, fNumber).ec;
}

#else

std::errc ReadNumber(char const * pBegin, char const * pEnd, double & fNumber)
{
    static locale_t const s_hPlain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    int const iFormer = errno;
    errno = 0;
    double const fRead = ::strtod_l(std::string(pBegin, pEnd).c_str(), nullptr, s_hPlain);
    bool const bOutOfRange = errno == ERANGE && (fRead == 0 || std::isinf(fRead));
    errno = iFormer;
    if (bOutOfRange)
        return std::errc::result_out_of_range;
    fNumber = fRead;
    return {};
}

#endif

} // namespace tsl::Platform
