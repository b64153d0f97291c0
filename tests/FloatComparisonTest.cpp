#include <tessel/FloatComparison.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{

TEST(FloatComparison, TakesATolerance)
{
    constexpr double fInfinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(tsl::CompareAbsTo(1.0, 1.5, 0.5), 0);
    EXPECT_EQ(tsl::CompareAbsTo(1.5, 1.0, 0.25), 1);
    EXPECT_EQ(tsl::CompareAbsTo(1.0, 1.5, 0.25), -1);
    EXPECT_EQ(tsl::CompareAbsTo(1.0, 1.0, -0.25), 1);
    EXPECT_EQ(tsl::CompareAbsTo(fInfinite, fInfinite, 1.0), -1);
    EXPECT_EQ(tsl::CompareAbsTo(fInfinite, 1.0, 1.0), 1);
    EXPECT_EQ(tsl::CompareAbsTo(std::nanf(""), 1.0f, 1.0f), -1);

    // The difference is rounded to float before it is compared.
    EXPECT_EQ(tsl::CompareAbsTo(1.0f, 0x1p-30f, 1.0f - 0x1p-24f), 1);
    EXPECT_EQ(tsl::CompareAbsTo(1.0f, 0x1p-30f, 1.0f), 0);
}

TEST(FloatComparison, CountsSignificantDigitsOfTheLeftNumber)
{
    struct Row
    {
        double a;
        double b;
        int iDigits;
        int iExpected;
    };
    Row const aRows[] = {
        {1000.0, 1000.5, 4, 0},
        {1000.5, 1000.0, 5, 1},
        {1000.0, 1000.5, 5, -1},
        {999.0, 1001.0, 1, 0},
        {9.0, 10.5, 1, -1},
        {10.5, 9.0, 1, 0},
        {0.012, 0.0129, 2, 0},
        {0.012, 0.0141, 2, -1},
        {1.0, 90.0, -1, 0},
        {0.0, 0.0, 5, 0},
        {0.0, 1e-30, 5, -1},
        {-5.0, -5.0, 5, -1},
        {-5.0, -9.0, 5, -1},
        {std::nan(""), 1.0, 5, -1},
        {1.0, 1.0, std::numeric_limits<int>::max(), 0},
        {1.0, 5.0, std::numeric_limits<int>::min(), 0},
    };
    for (Row const & oRow : aRows)
    {
        SCOPED_TRACE(std::to_string(oRow.a) + " and " + std::to_string(oRow.b));
        EXPECT_EQ(tsl::CompareRelTo(oRow.a, oRow.b, oRow.iDigits), oRow.iExpected);
        EXPECT_EQ(tsl::CompareRelTo(static_cast<float>(oRow.a), static_cast<float>(oRow.b), oRow.iDigits),
            oRow.iExpected);
    }

    EXPECT_EQ(tsl::CompareRelTo(1.0, 1.0 + 9e-14), 0);
    EXPECT_EQ(tsl::CompareRelTo(1.0, 1.0 + 2e-13), -1);
    EXPECT_EQ(tsl::CompareRelTo(1.0f, 1.00009f), 0);
    EXPECT_EQ(tsl::CompareRelTo(1.0f, 1.0002f), -1);
}

} // namespace
