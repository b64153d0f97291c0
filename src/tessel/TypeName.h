#pragma once

#include <tessel/Export.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>

namespace tsl
{

/// The display text of a type that is only known at run time, such as "class tsl::Message".
TSL_EXPORT std::string GetTypeName(std::type_info const & oType);

namespace TesselDetails
{

template<class T>
constexpr char const * GetSignature()
{
    return __PRETTY_FUNCTION__;
}

/// The name of T as the compiler writes it. What stands around the name in a signature is the same
/// for every type, so a type with a known name tells how much to cut off.
template<class T>
constexpr std::string_view GetBareTypeName()
{
    constexpr std::string_view sKnown = "double";
    constexpr std::string_view sKnownSignature = GetSignature<double>();
    constexpr std::size_t iHead = sKnownSignature.find(sKnown);
    constexpr std::size_t iTail = sKnownSignature.size() - iHead - sKnown.size();

    std::string_view const sSignature = GetSignature<T>();
    return sSignature.substr(iHead, sSignature.size() - iHead - iTail);
}

template<class T>
constexpr auto MakeTypeName()
{
    constexpr std::string_view sKeyword = std::is_class_v<T> ? "class " : "";
    constexpr std::string_view sName = GetBareTypeName<T>();

    std::array<char, sKeyword.size() + sName.size() + 1> aText{};
    std::size_t iLength = 0;
    for (char const c : sKeyword)
        aText[iLength++] = c;
    for (char const c : sName)
        aText[iLength++] = c;
    return aText;
}

template<class T>
TSL_HIDDEN inline constexpr auto g_aTypeName = MakeTypeName<T>();

} // namespace TesselDetails

/// The display text of type T, such as "class tsl::Root" or "unsigned int". It is made at compile time,
/// costs nothing at run time and lives as long as the code that asks for it.
template<class T>
constexpr char const * GetTypeName()
{
    return TesselDetails::g_aTypeName<T>.data();
}

} // namespace tsl
