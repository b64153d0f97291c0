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

/// The name of a type that is only known at run time, such as "class tsl::Message". Every type gets the
/// prefix "class ".
TSL_EXPORT std::string GetTypeName(std::type_info const & oType);

namespace TesselDetails
{

/// A text that contains the name of T.
template<class T>
constexpr char const * GetSignature()
{
    return __PRETTY_FUNCTION__;
}

/// The name of T, cut out of the compiler's text for a function signature. The text around the name is the
/// same for every type; its lengths are found with a type whose name is known.
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

/// The zero-terminated name of T, with the prefix "class " for a class.
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

/// The name of the type T, such as "class tsl::Root" or "unsigned int".
///
///     std::cout << GetTypeName<Message>(); // class tsl::Message
///
/// It is made at compile time. The pointer is valid as long as the calling code is loaded. Any thread may
/// call.
template<class T>
constexpr char const * GetTypeName()
{
    return TesselDetails::g_aTypeName<T>.data();
}

} // namespace tsl
