#include <tessel/Exception.h>
#include <tessel/NamedValue.h>
#include <tessel/StandardSupport.h>
#include <tessel/ValueInt32.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <unordered_map>

namespace
{

using namespace std::string_literals;

template<class T>
std::string Write(T const & oObject)
{
    std::ostringstream oStream;
    oStream << std::setw(4) << std::setfill('.') << oObject;
    return oStream.str();
}

TEST(StandardStreams, WriteTextsAndValuesAsStandardTexts)
{
    EXPECT_EQ(Write(tsl::String("a\0b"s)), ".a\0b"s);
    EXPECT_EQ(Write(tsl::ValueString("ab")), "..ab");
    EXPECT_EQ(Write(tsl::ValueString()), "NULL");
    EXPECT_EQ(Write(tsl::ValueInt32(-5)), "..-5");
    EXPECT_EQ(Write(tsl::ValueInt32()), "NULL");
    EXPECT_EQ(Write(tsl::NamedValue("n", tsl::ValueInt32(5))), ".n 5");

    // Longer than any replacement of a layout.
    EXPECT_EQ(Write(tsl::ValueString('x', 5000)).size(), 5000U);
}

TEST(StandardContainers, FindTextsByTheirBytes)
{
    std::unordered_map<tsl::String, int> oTexts{{"a", 1}, {tsl::String("a\0b"s), 2}};
    EXPECT_EQ(oTexts["a"], 1);
    EXPECT_EQ(oTexts[tsl::String("a\0b"s)], 2);

    std::unordered_map<tsl::ValueString, int> oValues{{"a", 1}};
    EXPECT_EQ(oValues["a"], 1);
    EXPECT_THROW(oValues[tsl::ValueString()], tsl::Exception);
}

TEST(StandardViews, ReferToTheText)
{
    tsl::String const sText("a\0b"s);
    EXPECT_EQ(tsl::GetView(sText).data(), sText.c_str());
    EXPECT_EQ(tsl::GetView(sText).size(), 3U);
    EXPECT_EQ(tsl::GetView(tsl::ValueString("ab")), "ab");
    EXPECT_THROW(static_cast<void>(tsl::GetView(tsl::ValueString())), tsl::Exception);
}

#ifdef __cpp_lib_format
TEST(StandardFormat, TakesTextsAndValuesAsTexts)
{
    EXPECT_EQ(std::format("{:>3}|{}", tsl::String("a"), tsl::String()), "  a|");
    EXPECT_EQ(std::format("{:.<5}|{}", tsl::ValueString("ab"), tsl::ValueString()), "ab...|NULL");
    EXPECT_EQ(std::format("{:>4}|{}", tsl::ValueInt32(-5), tsl::ValueInt32()), "  -5|NULL");
}
#endif

} // namespace
