#pragma once

#include <tessel/String.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <concepts>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string_view>
#include <version>

#ifdef __cpp_lib_format
#include <format>
#endif

/// \file
/// Texts and values in the standard library: streams, views, std::hash of texts, which must not be null, and
/// std::formatter, with the format of a text, if the standard library has it. Tessel.h does not include this header.
///
///     std::unordered_map<tsl::String, int> oCounts;
///     std::cout << ++oCounts["a text"] << ' ' << tsl::ValueInt32(5) << '\n';

namespace tsl
{

/// Writes the text as a std::string is written. A null value is written as "NULL".
inline std::ostream & operator<<(std::ostream & oStream, String const & s)
{
    return oStream << s.s_str();
}
inline std::ostream & operator<<(std::ostream & oStream, ValueString const & s)
{
    return oStream << (s.IsNull() ? std::string_view("NULL") : std::string_view(s.s_str()));
}

/// Writes the value in its default layout.
inline std::ostream & operator<<(std::ostream & oStream, Value const & oValue)
{
    ValueString sText("");
    return oStream << oValue.AddAsString(sText);
}

/// The text, which must not be null, with its zero bytes. Valid until its next change.
inline std::string_view GetView(String const & s)
{
    return s.s_str();
}
inline std::string_view GetView(ValueString const & s)
{
    return s.s_str();
}

} // namespace tsl

/// \cond

template<>
struct std::hash<tsl::String>
{
    std::size_t operator()(tsl::String const & s) const noexcept
    {
        return std::hash<std::string>()(s.s_str());
    }
};

// Null texts cannot be compared by ==, so they have no hash value either.
template<>
struct std::hash<tsl::ValueString>
{
    std::size_t operator()(tsl::ValueString const & s) const { return std::hash<std::string>()(s.s_str()); }
};

#ifdef __cpp_lib_format

// All take the format of a text, such as "{:>20}".
template<>
struct std::formatter<tsl::String> : std::formatter<std::string_view>
{
    template<class Context>
    auto format(tsl::String const & s, Context & oContext) const
    {
        return std::formatter<std::string_view>::format(tsl::GetView(s), oContext);
    }
};

template<std::derived_from<tsl::Value> T>
struct std::formatter<T> : std::formatter<std::string_view>
{
    template<class Context>
    auto format(T const & oValue, Context & oContext) const
    {
        tsl::ValueString sText("");
        return std::formatter<std::string_view>::format(tsl::GetView(oValue.AddAsString(sText)), oContext);
    }
};

template<>
struct std::formatter<tsl::ValueString> : std::formatter<std::string_view>
{
    template<class Context>
    auto format(tsl::ValueString const & s, Context & oContext) const
    {
        return std::formatter<std::string_view>::format(s.IsNull() ? "NULL" : tsl::GetView(s), oContext);
    }
};

#endif

/// \endcond
