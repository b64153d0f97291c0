#include "AssertionTest.h"

#include <tessel/Float32Validator.h>
#include <tessel/Int32Validator.h>
#include <tessel/StringFormator.h>
#include <tessel/StringValidator.h>
#include <tessel/ValueFormator.h>
#include <tessel/ValueValidator.h>

#include <limits>

using tsl::Float32Validator;
using tsl::Int32Validator;
using tsl::Result;
using tsl::StringFormator;
using tsl::StringValidator;

namespace
{

/// A failure of a range check, which has no source place.
Result OutOfRange(char const * sText)
{
    return Result(4, sText, Result::eCategoryDefault);
}

TEST(Validators, CompareTheLengthOfATextWithTheirLimits)
{
    StringValidator const oRange(2, 4);
    EXPECT_EQ(oRange.Validate("a"), OutOfRange("String must contain at least 2 letters."));
    EXPECT_EQ(oRange.Validate("abcde"), OutOfRange("String must contain at most 4 letters."));
    EXPECT_TRUE(oRange.Validate("ab").IsOk() && oRange.Validate("abcd").IsOk());
    EXPECT_TRUE(StringValidator().Validate("").IsOk() && StringValidator(2).Validate("abcde").IsOk());
    EXPECT_EQ(StringValidator(0, 0).Validate("a"), OutOfRange("String must contain at most 0 letters."));

    StringValidator const oNothing(3, 2);
    EXPECT_EQ(oNothing.Validate("ab"), OutOfRange("String must contain at least 3 letters."));
    EXPECT_EQ(oNothing.Validate("abc"), OutOfRange("String must contain at most 2 letters."));
}

TEST(Validators, CompareAWholeNumberWithTheirLimits)
{
    constexpr int iLowest = std::numeric_limits<int>::min();
    constexpr int iHighest = std::numeric_limits<int>::max();
    Int32Validator const oRange(0, 10);
    EXPECT_EQ(oRange.Validate(-1), OutOfRange("Value must be greater or equal to 0."));
    EXPECT_EQ(oRange.Validate(11), OutOfRange("Value must be less or equal to 10."));
    EXPECT_TRUE(oRange.Validate(0).IsOk() && oRange.Validate(10).IsOk());
    EXPECT_TRUE(Int32Validator().Validate(iLowest).IsOk() && Int32Validator().Validate(iHighest).IsOk());
    EXPECT_EQ(
        Int32Validator(-2, iLowest).Validate(-1), OutOfRange("Value must be less or equal to -2147483648."));
}

TEST(Validators, CompareAFloatWithTheirLimits)
{
    using Limits = std::numeric_limits<float>;
    Float32Validator const oAll;
    Float32Validator const oRange(0.5F, 1.0F);
    EXPECT_EQ(oRange.Validate(2.0F), OutOfRange("Value must be less or equal to 1.000000."));
    EXPECT_EQ(oRange.Validate(0.25F), OutOfRange("Value must be greater or equal to 0.500000."));
    EXPECT_TRUE(oRange.Validate(0.5F).IsOk() && oRange.Validate(1.0F).IsOk());
    EXPECT_TRUE(oRange.Validate(Limits::quiet_NaN()).IsOk());
    EXPECT_TRUE(oAll.Validate(Limits::lowest()).IsOk() && oAll.Validate(Limits::max()).IsOk());
    EXPECT_EQ(oAll.Validate(Limits::infinity()),
        OutOfRange("Value must be less or equal to 340282346638528859811704183484516925440.000000."));
    EXPECT_EQ(oAll.Validate(-Limits::infinity()),
        OutOfRange("Value must be greater or equal to -340282346638528859811704183484516925440.000000."));
}

TEST(Formators, ApplyTheirFlagsInOrder)
{
    struct Row
    {
        int iFlags;
        char const * sFormatted;
    };
    Row const aRows[] = {
        {0, "\t aBc \n"}, {1, "\t ABC \n"}, {2, "\t abc \n"}, {3, "\t abc \n"}, {4, "aBc \n"}, {8, "\t aBc"}};
    for (Row const & oRow : aRows)
    {
        tsl::String sTarget = "former";
        StringFormator(oRow.iFlags).Format("\t aBc \n", sTarget);
        EXPECT_EQ(sTarget, oRow.sFormatted) << oRow.iFlags;
    }
}

TEST(AbstractValidators, AreKnownAndCannotBeMade)
{
    for (tsl::ClassDescription const * pDescription :
        {&tsl::ValueFormator::GetStaticClassDesc(), &tsl::ValueValidator::GetStaticClassDesc()})
    {
        EXPECT_TRUE(pDescription->IsAbstract()) << pDescription->GetClassName();
        EXPECT_EQ(pDescription->GetBaseClassDescription(), &tsl::Root::GetStaticClassDesc());
        EXPECT_TRUE(tsltest::Asserts("false", "Unknown", pDescription->GetFactoryFunction()));
    }
}

} // namespace
