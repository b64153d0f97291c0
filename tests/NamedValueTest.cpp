#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr char const * NO_VALUE = "NamedValue::GetValue : Kein Wert vorhanden!";

TEST(NamedValueHolding, ReusesAnObjectOfTheSameClassOnly)
{
    NamedValue oNamed("n", ValueInt32(5));
    Value const * const pHeld = &oNamed.GetValue();
    oNamed.SetValue(ValueInt32(6));
    oNamed.SetValue(oNamed.GetValue());
    EXPECT_EQ(&oNamed.GetValue(), pHeld);
    EXPECT_EQ(GetText(oNamed), "n 6");
    oNamed.SetValue(new ValueString("text"));
    oNamed.SetValue(&oNamed.GetValue());
    EXPECT_EQ(GetText(oNamed), "n text");
    oNamed.SetValue(ValueNull::Null());
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { std::as_const(oNamed).GetValue(); }));

    // Null without any of its parts.
    EXPECT_TRUE(oNamed.IsNull());
    EXPECT_TRUE(NamedValue("n", ValueInt32()).IsNull());
    EXPECT_TRUE(NamedValue(ValueString(), ValueInt32(5)).IsNull());
    EXPECT_FALSE(NamedValue("", ValueInt32(0)).IsNull());
    oNamed.SetNull();
    EXPECT_TRUE(oNamed.GetName().IsNull());
}

TEST(NamedValueCopying, IsDeepAndDropsANameWithoutAValue)
{
    NamedValue const oSource("n", ValueInt32(5));
    NamedValue oCopy(oSource);
    oCopy.SetValue(ValueInt32(6));
    EXPECT_EQ(GetText(oSource) + GetText(oCopy), "n 5n 6");
    oCopy = NamedValue("name alone");
    EXPECT_TRUE(oCopy.GetName().IsNull());

    // A part of itself.
    NamedValue oOuter("outer", NamedValue("middle", NamedValue("inner", ValueInt32(5))));
    oOuter = static_cast<NamedValue &>(oOuter.GetValue());
    EXPECT_EQ(GetText(oOuter), "middle inner 5");
    oOuter.SetValue(static_cast<NamedValue &>(oOuter.GetValue()).GetValue());
    EXPECT_EQ(GetText(oOuter), "middle 5");
}

TEST(NamedValueComparing, LooksAtNamesAndThenAtValues)
{
    NamedValue const oA1("a", ValueInt32(1));
    Rows<NamedValue, NamedValue, Value::eCompare> aRows = {
        {NamedValue("a", ValueInt32(2)), NamedValue("b", ValueInt32(1)), Value::eLess},
        {NamedValue("b", ValueInt32(1)), NamedValue("a", ValueInt32(2)), Value::eGreater},
        {oA1, oA1, Value::eEqual},
        {oA1, NamedValue("a", ValueString("1")), Value::eNotComparable},
        {NamedValue(), NamedValue("a"), Value::eEqual},
    };
    for (auto const & [oFrom, oRight, eExpected] : aRows)
    {
        SCOPED_TRACE(GetText(oFrom) + " and " + GetText(oRight));
        EXPECT_EQ(oFrom.CompareTo(oRight), eExpected);
        NamedValue oLeft(oFrom); // not a constant
        EXPECT_EQ(oLeft == oRight, eExpected == Value::eEqual);
        EXPECT_EQ(oLeft != oRight, eExpected != Value::eEqual);
        EXPECT_EQ(oLeft < oRight, eExpected == Value::eLess);
        EXPECT_EQ(oLeft >= oRight, eExpected == Value::eGreater || eExpected == Value::eEqual);
    }
}

TEST(NamedValueComparing, SkipsTheChecksWithAConstantOnTheLeft)
{
    // Both are null and so are equal, while their contents differ, which a constant on the left finds.
    NamedValue oNamed(ValueString(), ValueInt32(7));
    NamedValue oSecond(ValueString(), ValueInt32(8));
    EXPECT_TRUE(oNamed == oSecond);
    EXPECT_TRUE(oNamed == std::as_const(oSecond));
    EXPECT_TRUE(oNamed <= oSecond);
    EXPECT_FALSE(std::as_const(oNamed) == oSecond);
    EXPECT_TRUE(std::as_const(oNamed) != std::as_const(oSecond));

    NamedValue const oNameAlone("n");
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { return oNameAlone == NamedValue("n"); }));
}

TEST(NamedValueText, FollowsTheLayoutsOfItsPartsAndReadsNullAlone)
{
    NamedValue oNamed("n", ValueInt32(5));
    NamedValueConverterLayout oLayout;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%03d}"));
    NamedValueConverterLayout oCopy;
    oCopy = oLayout;
    oLayout.AddLayout(new ValueIntegerConverterLayout("<${%d}>"));
    EXPECT_EQ(GetText(oNamed, oCopy), "n 005");
    EXPECT_EQ(GetText(oNamed, oLayout), "n <5>");
    NamedValueConverterLayout const oOther("${value}=${other}", "no ${name}");
    EXPECT_EQ(GetText(oNamed, oOther), "5=${other}");
    EXPECT_EQ(GetText(NamedValue("n"), oOther), "no n");
    NamedValueConverterLayout const oMissing("${name}", "${value}");
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { GetText(NamedValue("n"), oMissing); }));

    ValueConverter const & oConverter = oNamed.GetConverter();
    EXPECT_TRUE(Asserts("0", "not implemented", [&] { return oConverter.ConvertFromText("n 5", oNamed); }));
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oNamed).IsOk());
    EXPECT_TRUE(oNamed.GetName().IsNull());
}

} // namespace
