#include "AssertionTest.h"

#include <tessel/NamedValue.h>
#include <tessel/NamedValueConverter.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>
#include <tessel/ValueNull.h>
#include <tessel/ValueStringConverter.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace
{

constexpr char const * NO_VALUE = "NamedValue::GetValue : Kein Wert vorhanden!";

using tsl::NamedValue;
using tsl::NamedValueConverterLayout;
using tsl::Value;
using tsl::ValueInt32;
using tsl::ValueString;
using tsltest::Asserts;

std::string GetText(Value const & oValue, tsl::ValueConverterLayout const & oLayout)
{
    ValueString sText("");
    oValue.GetConverter().ConvertToText(oValue, sText, oLayout);
    return sText.s_str();
}

std::string GetText(Value const & oValue)
{
    ValueString sText("");
    return oValue.AddAsString(sText).s_str();
}

/// A value that tells when it ends, and that cannot be made from its description.
class Watched : public ValueInt32
{
public:
    explicit Watched(int & iAlive) : ValueInt32(1), m_iAlive(iAlive) { ++m_iAlive; }
    ~Watched() override { --m_iAlive; }

    tsl::ClassDescription const & GetClassDesc() const override
    {
        static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Watched>(
            &ValueInt32::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, nullptr);
        return oDescription;
    }

private:
    int & m_iAlive;
};

TEST(NamedValueNull, IsMissingAnyOfItsParts)
{
    EXPECT_TRUE(NamedValue().IsNull());
    EXPECT_TRUE(NamedValue("n").IsNull());
    EXPECT_TRUE(NamedValue("n", ValueInt32()).IsNull());
    EXPECT_TRUE(NamedValue(ValueString(), ValueInt32(5)).IsNull());
    EXPECT_FALSE(NamedValue("", ValueInt32(0)).IsNull());

    NamedValue oNamed("n", ValueInt32(5));
    oNamed.SetNull();
    EXPECT_TRUE(oNamed.GetName().IsNull());
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { oNamed.GetValue(); }));
}

TEST(NamedValueHolding, ReusesAnObjectOfTheSameClassOnly)
{
    NamedValue oNamed("n", ValueInt32(5));
    Value const * const pHeld = &oNamed.GetValue();

    oNamed.SetValue(ValueInt32(6));
    EXPECT_EQ(&oNamed.GetValue(), pHeld);
    EXPECT_EQ(GetText(oNamed), "n 6");
    oNamed.SetValue(oNamed.GetValue());
    EXPECT_EQ(GetText(oNamed), "n 6");

    oNamed.SetValue(ValueString("text"));
    EXPECT_EQ(GetText(oNamed), "n text");
    oNamed.SetValue(ValueInt32());
    EXPECT_EQ(GetText(oNamed.GetValue()), "NULL");

    oNamed.SetValue(tsl::ValueNull::Null());
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { std::as_const(oNamed).GetValue(); }));
}

TEST(NamedValueHolding, OwnsThePointersItIsGiven)
{
    int iAlive = 0;
    {
        NamedValue oNamed("n", new Watched(iAlive));
        oNamed.SetValue(new Watched(iAlive));
        EXPECT_EQ(iAlive, 1);
        oNamed.SetValue(&oNamed.GetValue());
        EXPECT_EQ(iAlive, 1);

        // What cannot be copied leaves the held value alone.
        NamedValue oOther("other", ValueInt32(7));
        EXPECT_TRUE(Asserts(
            "fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!", [&] { oOther = oNamed; }));
        EXPECT_EQ(GetText(oOther), "other 7");
    }
    EXPECT_EQ(iAlive, 0);

    NamedValue oNamed("n", ValueInt32(5));
    oNamed.SetValue(nullptr);
    EXPECT_TRUE(oNamed.IsNull());
    EXPECT_EQ(oNamed.GetName(), "n");
}

TEST(NamedValueCopying, IsDeepAndDropsANameWithoutAValue)
{
    NamedValue const oSource("n", ValueInt32(5));
    NamedValue oCopy(oSource);
    oCopy.SetValue(ValueInt32(6));
    oCopy.SetName("m");
    EXPECT_EQ(GetText(oSource), "n 5");
    EXPECT_EQ(GetText(oCopy), "m 6");

    oCopy = *&oCopy;
    EXPECT_EQ(GetText(oCopy), "m 6");

    oCopy = NamedValue("name alone");
    EXPECT_TRUE(oCopy.GetName().IsNull());

    std::unique_ptr<tsl::Root> const pPolymorphic(oSource.GetCopy());
    EXPECT_EQ(GetText(static_cast<NamedValue &>(*pPolymorphic)), "n 5");
}

TEST(NamedValueCopying, TakesAPartOfItself)
{
    NamedValue oOuter("outer", NamedValue("middle", NamedValue("inner", ValueInt32(5))));
    oOuter = static_cast<NamedValue &>(oOuter.GetValue());
    EXPECT_EQ(GetText(oOuter), "middle inner 5");
    oOuter.SetValue(static_cast<NamedValue &>(oOuter.GetValue()).GetValue());
    EXPECT_EQ(GetText(oOuter), "middle 5");
}

TEST(NamedValueComparing, LooksAtNamesAndThenAtValues)
{
    struct Row
    {
        NamedValue oLeft;
        NamedValue oRight;
        Value::eCompare eExpected;
    };
    Row const aRows[] = {
        {NamedValue("a", ValueInt32(2)), NamedValue("b", ValueInt32(1)), Value::eLess},
        {NamedValue("b", ValueInt32(1)), NamedValue("a", ValueInt32(2)), Value::eGreater},
        {NamedValue("a", ValueInt32(1)), NamedValue("a", ValueInt32(2)), Value::eLess},
        {NamedValue("a", ValueInt32(1)), NamedValue("a", ValueInt32(1)), Value::eEqual},
        {NamedValue("a", ValueInt32(1)), NamedValue("a", ValueString("1")), Value::eNotComparable},
        {NamedValue("a", ValueInt32(1)), NamedValue(), Value::eNotComparable},
        {NamedValue(), NamedValue("a", ValueInt32(1)), Value::eNotComparable},
        {NamedValue(), NamedValue("a"), Value::eEqual},
    };
    for (Row const & oRow : aRows)
    {
        SCOPED_TRACE(GetText(oRow.oLeft) + " and " + GetText(oRow.oRight));
        EXPECT_EQ(oRow.oLeft.CompareTo(oRow.oRight), oRow.eExpected);

        NamedValue oLeft;
        oLeft.SetName(oRow.oLeft.GetName());
        if (!oRow.oLeft.IsNull())
            oLeft.SetValue(oRow.oLeft.GetValue());
        bool const bEqual = oRow.eExpected == Value::eEqual;
        bool const bLess = oRow.eExpected == Value::eLess;
        bool const bGreater = oRow.eExpected == Value::eGreater;
        EXPECT_EQ(oLeft == oRow.oRight, bEqual);
        EXPECT_EQ(oLeft != oRow.oRight, !bEqual);
        EXPECT_EQ(oLeft < oRow.oRight, bLess);
        EXPECT_EQ(oLeft <= oRow.oRight, bLess || bEqual);
        EXPECT_EQ(oLeft > oRow.oRight, bGreater);
        EXPECT_EQ(oLeft >= oRow.oRight, bGreater || bEqual);
    }
}

TEST(NamedValueComparing, SkipsTheChecksWithAConstantOnTheLeft)
{
    // Two null values are equal, while their contents differ.
    NamedValue oLeft(ValueString(), ValueInt32(5));
    NamedValue oRight(ValueString(), ValueInt32(6));
    NamedValue const oConstLeft(oLeft.GetName(), oLeft.GetValue());
    NamedValue const oConstRight(oRight.GetName(), oRight.GetValue());

    EXPECT_TRUE(oLeft == oRight);
    EXPECT_TRUE(oLeft == oConstRight);
    EXPECT_TRUE(oLeft == NamedValue(ValueString(), ValueInt32(6)));
    EXPECT_TRUE(NamedValue(ValueString(), ValueInt32(5)) == oRight);
    EXPECT_TRUE(NamedValue(ValueString(), ValueInt32(5)) == oConstRight);
    EXPECT_FALSE(oConstLeft == oRight);
    EXPECT_FALSE(oConstLeft == oConstRight);
    EXPECT_FALSE(oConstLeft == NamedValue(ValueString(), ValueInt32(6)));

    EXPECT_TRUE(oConstLeft == oLeft);
    NamedValue const oNameAlone("n");
    EXPECT_FALSE(oNameAlone == oConstLeft);
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { static_cast<void>(oNameAlone == NamedValue("n")); }));
}

TEST(NamedValueText, FollowsTheLayoutsOfItsParts)
{
    NamedValue const oNamed("n", ValueInt32(5));

    NamedValueConverterLayout oLayout;
    oLayout.AddLayout(new tsl::ValueIntegerConverterLayout("${%03d}"));
    EXPECT_EQ(GetText(oNamed, oLayout), "n 005");
    EXPECT_EQ(GetText(NamedValue(), oLayout), "NULL");
    EXPECT_EQ(GetText(NamedValue("outer", oNamed), oLayout), "outer n 5");

    NamedValueConverterLayout const oCopy(oLayout);
    oLayout.AddLayout(new tsl::ValueIntegerConverterLayout("<${%d}>"));
    EXPECT_EQ(GetText(oNamed, oCopy), "n 005");
    EXPECT_EQ(GetText(oNamed, oLayout), "n <5>");

    NamedValueConverterLayout const oOther("${value}=${other}", "no ${name}");
    EXPECT_EQ(GetText(oNamed, oOther), "5=${other}");
    EXPECT_EQ(GetText(NamedValue("n"), oOther), "no n");
    EXPECT_EQ(GetText(NamedValue(), oOther), "no NULL");

    NamedValueConverterLayout const oMissing("${name}", "${value}");
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { GetText(NamedValue("n"), oMissing); }));
}

TEST(NamedValueText, CannotBeReadButForNull)
{
    NamedValue oNamed("n", ValueInt32(5));
    tsl::ValueConverter const & oConverter = oNamed.GetConverter();
    EXPECT_TRUE(Asserts(
        "0", "not implemented", [&] { static_cast<void>(oConverter.ConvertFromText("n 5", oNamed)); }));
    EXPECT_EQ(GetText(oNamed), "n 5");

    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oNamed).IsOk());
    EXPECT_TRUE(oNamed.GetName().IsNull());
}

} // namespace
