#include "TestPrelude.h"

#include <cfloat>
#include <cmath>

using namespace tsl;
using namespace tsltest;

TEST(Validators, CompareWithTheirLimits)
{
    Rows<char const *, Result, char const *> aRows = {
        {"String(2, 4) of (a)", StringValidator(2, 4).Validate("a"),
            "String must contain at least 2 letters."},
        {"String(2, 4) of (abcde)", StringValidator(2, 4).Validate("abcde"),
            "String must contain at most 4 letters."},
        {"String(2, 4) of (abcd)", StringValidator(2, 4).Validate("abcd"), ""},
        {"String(2) of (abcde)", StringValidator(2).Validate("abcde"), ""},
        {"Int32(0, 10) of (-1)", Int32Validator(0, 10).Validate(-1), "Value must be greater or equal to 0."},
        {"Int32(0, 10) of (11)", Int32Validator(0, 10).Validate(11), "Value must be less or equal to 10."},
        {"Int32(0, 10) of (10)", Int32Validator(0, 10).Validate(10), ""},
        {"Int32() of (INT_MIN)", Int32Validator().Validate(INT_MIN), ""},
        {"Float32(0.5F, 1.0F) of (0.25F)", Float32Validator(0.5F, 1.0F).Validate(0.25F),
            "Value must be greater or equal to 0.500000."},
        {"Float32(0.5F, 1.0F) of (1.0F)", Float32Validator(0.5F, 1.0F).Validate(1.0F), ""},
        {"Float32(0.5F, 1.0F) of (std::nanf())", Float32Validator(0.5F, 1.0F).Validate(std::nanf("")), ""},
        {"Float32() of (HUGE_VALF)", Float32Validator().Validate(HUGE_VALF),
            "Value must be less or equal to 340282346638528859811704183484516925440.000000."},
    };
    for (auto const & [sCase, oResult, sFailure] : aRows)
        EXPECT_EQ(oResult, *sFailure ? Result(4, sFailure, Result::eCategoryDefault) : Result()) << sCase;
}

TEST(Formators, ApplyTheirFlagsInOrder)
{
    std::pair<int, char const *> const aRows[] = {
        {0, "\t aBc \n"},
        {1, "\t ABC \n"},
        {3, "\t abc \n"},
        {4, "aBc \n"},
        {8, "\t aBc"},
    };
    for (auto const & [iFlags, sFormatted] : aRows)
    {
        String sTarget = "former";
        StringFormator(iFlags).Format("\t aBc \n", sTarget);
        EXPECT_EQ(sTarget, sFormatted) << iFlags;
    }
}
