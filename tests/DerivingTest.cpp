#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

// What a program may add to the library's classes without meeting what the library needs for itself. The file
// is compiled without optimisation, so that a constant whose address is taken must be defined somewhere.

namespace
{

struct Constants
{
    static int const INT = 5;
    static unsigned int const UNSIGNED = 6;
    static char const CHAR = 'c';
};

TEST(TextAppending, NeedsNoDefinitionOfAConstant)
{
    tsl::String sText("t");
    sText << Constants::INT << Constants::UNSIGNED << Constants::CHAR;
    sText += Constants::INT;
    sText += Constants::UNSIGNED;
    sText += Constants::CHAR;
    EXPECT_EQ(sText + Constants::INT + Constants::UNSIGNED + Constants::CHAR, "t56c56c56c");

    tsl::ValueString sValue("v");
    sValue << Constants::INT << Constants::CHAR;
    sValue += Constants::INT;
    sValue += Constants::CHAR;
    EXPECT_EQ(sValue + Constants::INT + Constants::CHAR, "v5c5c5c");
}

template<class Sum, class... Rights>
constexpr bool IsSum = (std::is_same_v<Sum, Rights> && ...);

// Sums of other texts stay what they are where the library's operators are seen without a class of its own.
using tsl::operator+;
static_assert(
    IsSum<tsl::String, decltype(tsl::String() + std::string()), decltype(std::string() + tsl::String()),
        decltype(tsl::String() + 'c'), decltype(tsl::String() + true), decltype(tsl::String() + short()),
        decltype(tsl::String() + 1u), decltype(tsl::String() + 1.0), decltype(tsl::String() + 1.0f),
        decltype(tsl::String() + std::declval<int *>()), decltype("x" + tsl::String())>);
static_assert(IsSum<tsl::ValueString, decltype(tsl::String() + tsl::ValueString()),
    decltype(tsl::ValueString() + tsl::String()), decltype(std::string() + tsl::ValueString()),
    decltype(tsl::ValueString() + nullptr), decltype(tsl::ValueString() + 1.0f),
    decltype("x" + tsl::ValueInt32()), decltype(tsl::String() + tsl::ValueFloat32()),
    decltype(tsl::ValueString() + tsl::ValueInt32())>);
static_assert(IsSum<std::string, decltype(std::string() + "x"), decltype("x" + std::string())>);
static_assert(IsSum<tsl::ValueFloat32, decltype(0 + tsl::ValueFloat32()), decltype(tsl::ValueFloat32() + 0)>);
static_assert(IsSum<int, decltype(0 + tsl::ValueInt32())>);

} // namespace
