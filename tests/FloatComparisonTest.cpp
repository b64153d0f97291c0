#include "TestPrelude.h"

#include <cmath>

using namespace tsl;
using namespace tsltest;

TEST(FloatComparison, TakesATolerance)
{
    constexpr double fInfinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(CompareAbsTo(1.0, 1.5, 0.5), 0);
    EXPECT_EQ(CompareAbsTo(1.5, 1.0, 0.25), 1);
    EXPECT_EQ(CompareAbsTo(1.0, 1.5, 0.25), -1);
    EXPECT_EQ(CompareAbsTo(1.0, 1.0, -0.25), 1);
    EXPECT_EQ(CompareAbsTo(fInfinite, fInfinite, 1.0), -1);

    // The difference is rounded to float before it is compared.
    EXPECT_EQ(CompareAbsTo(1.0f, 0x1p-30f, 1.0f - 0x1p-24f), 1);
    EXPECT_EQ(CompareAbsTo(1.0f, 0x1p-30f, 1.0f), 0);
}

TEST(FloatComparison, CountsSignificantDigitsOfTheLeftNumber)
{
    Rows<double, double, int, int> aRows = {
        {1000.0, 1000.5, 4, 0},
        {1000.5, 1000.0, 5, 1},
        {1000.0, 1000.5, 5, -1},
        {10.5, 9.0, 1, 0},
        {0.012, 0.0141, 2, -1},
        {0.0, 0.0, 5, 0},
        {-5.0, -5.0, 5, -1},
        {std::nan(""), 1.0, 5, -1},
        {1.0, 5.0, INT_MIN, 0},
    };
    for (auto const & [a, b, iDigits, iExpected] : aRows)
    {
        SCOPED_TRACE(testing::Message() << a << " and " << b);
        EXPECT_EQ(CompareRelTo(a, b, iDigits), iExpected);
        EXPECT_EQ(CompareRelTo(static_cast<float>(a), static_cast<float>(b), iDigits), iExpected);
    }
    EXPECT_EQ(CompareRelTo(1.0, 1.0 + 9e-14), 0);
    EXPECT_EQ(CompareRelTo(1.0, 1.0 + 2e-13), -1);
    EXPECT_EQ(CompareRelTo(1.0f, 1.0002f), -1);
}
