#include "AssertionTest.h"

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr char const * NO_VALUE = "NamedValue::GetValue : Kein Wert vorhanden!";

/// A value that tells when it ends, and that cannot be made from its description.
class Watched : public ValueInt32
{
public:
    explicit Watched(int & iAlive) : ValueInt32(1), m_iAlive(iAlive) { ++m_iAlive; }
    ~Watched() override { --m_iAlive; }

    ClassDescription const & GetClassDesc() const override
    {
        static ClassDescription const & oDescription =
            DescribeClass<Watched>(&ValueInt32::GetStaticClassDesc(), ClassDescription::eConcrete, nullptr);
        return oDescription;
    }

private:
    int & m_iAlive;
};

TEST(NamedValueNull, IsMissingAnyOfItsParts)
{
    EXPECT_TRUE(NamedValue().IsNull() && NamedValue("n").IsNull());
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
    oNamed.SetValue(oNamed.GetValue());
    EXPECT_EQ(&oNamed.GetValue(), pHeld);
    EXPECT_EQ(GetText(oNamed), "n 6");
    oNamed.SetValue(ValueString("text"));
    EXPECT_EQ(GetText(oNamed), "n text");
    oNamed.SetValue(ValueNull::Null());
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { std::as_const(oNamed).GetValue(); }));
}

TEST(NamedValueHolding, OwnsThePointersItIsGiven)
{
    int iAlive = 0;
    {
        NamedValue oNamed("n", new Watched(iAlive));
        oNamed.SetValue(new Watched(iAlive));
        oNamed.SetValue(&oNamed.GetValue());
        EXPECT_EQ(iAlive, 1);

        // What cannot be copied leaves the held value alone.
        NamedValue oOther("other", ValueInt32(7));
        EXPECT_TRUE(Asserts(
            "fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!", [&] { oOther = oNamed; }));
        EXPECT_EQ(GetText(oOther), "other 7");
        oOther.SetValue(nullptr);
        EXPECT_TRUE(oOther.IsNull());
        EXPECT_EQ(oOther.GetName(), "other");
    }
    EXPECT_EQ(iAlive, 0);
}

TEST(NamedValueCopying, IsDeepAndDropsANameWithoutAValue)
{
    NamedValue const oSource("n", ValueInt32(5));
    NamedValue oCopy(oSource);
    oCopy.SetValue(ValueInt32(6));
    oCopy = *&oCopy;
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
        {oA1, NamedValue("a", ValueInt32(2)), Value::eLess}, {oA1, oA1, Value::eEqual},
        {oA1, NamedValue("a", ValueString("1")), Value::eNotComparable},
        {oA1, NamedValue(), Value::eNotComparable}, {NamedValue(), oA1, Value::eNotComparable},
        {NamedValue(), NamedValue("a"), Value::eEqual}};
    for (auto const & [oFrom, oRight, eExpected] : aRows)
    {
        SCOPED_TRACE(GetText(oFrom) + " and " + GetText(oRight));
        EXPECT_EQ(oFrom.CompareTo(oRight), eExpected);
        NamedValue oLeft(oFrom); // not a constant
        EXPECT_EQ(oLeft == oRight, eExpected == Value::eEqual);
        EXPECT_EQ(oLeft != oRight, eExpected != Value::eEqual);
        EXPECT_EQ(oLeft < oRight, eExpected == Value::eLess);
        EXPECT_EQ(oLeft <= oRight, eExpected == Value::eLess || eExpected == Value::eEqual);
        EXPECT_EQ(oLeft > oRight, eExpected == Value::eGreater);
        EXPECT_EQ(oLeft >= oRight, eExpected == Value::eGreater || eExpected == Value::eEqual);
    }
}

TEST(NamedValueComparing, SkipsTheChecksWithAConstantOnTheLeft)
{
    // Two null values are equal, while their contents differ.
    NamedValue oLeft(ValueString(), ValueInt32(5));
    NamedValue oRight(ValueString(), ValueInt32(6));
    NamedValue const oConstLeft(oLeft.GetName(), oLeft.GetValue());
    NamedValue const oConstRight(oRight.GetName(), oRight.GetValue());
    EXPECT_TRUE(oLeft == oRight && oLeft == oConstRight);
    EXPECT_TRUE(oLeft == NamedValue(ValueString(), ValueInt32(6)));
    EXPECT_TRUE(NamedValue(ValueString(), ValueInt32(5)) == oConstRight);
    EXPECT_FALSE(oConstLeft == oRight || oConstLeft == oConstRight);
    EXPECT_FALSE(oConstLeft == NamedValue(ValueString(), ValueInt32(6)));

    EXPECT_TRUE(oConstLeft == oLeft);
    NamedValue const oNameAlone("n");
    EXPECT_FALSE(oNameAlone == oConstLeft);
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { static_cast<void>(oNameAlone == NamedValue("n")); }));
}

TEST(NamedValueText, FollowsTheLayoutsOfItsPartsAndReadsNullAlone)
{
    NamedValue oNamed("n", ValueInt32(5));
    NamedValueConverterLayout oLayout;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%03d}"));
    NamedValueConverterLayout const oCopy(oLayout);
    oLayout.AddLayout(new ValueIntegerConverterLayout("<${%d}>"));
    EXPECT_EQ(GetText(oNamed, oCopy), "n 005");
    EXPECT_EQ(GetText(oNamed, oLayout), "n <5>");
    EXPECT_EQ(GetText(NamedValue(), oLayout), "NULL");
    EXPECT_EQ(GetText(NamedValue("outer", oNamed), oLayout), "outer n 5");

    NamedValueConverterLayout const oOther("${value}=${other}", "no ${name}");
    EXPECT_EQ(GetText(oNamed, oOther), "5=${other}");
    EXPECT_EQ(GetText(NamedValue("n"), oOther), "no n");
    EXPECT_EQ(GetText(NamedValue(), oOther), "no NULL");
    NamedValueConverterLayout const oMissing("${name}", "${value}");
    EXPECT_TRUE(Asserts("m_pValue", NO_VALUE, [&] { GetText(NamedValue("n"), oMissing); }));

    ValueConverter const & oConverter = oNamed.GetConverter();
    EXPECT_TRUE(Asserts(
        "0", "not implemented", [&] { static_cast<void>(oConverter.ConvertFromText("n 5", oNamed)); }));
    EXPECT_EQ(GetText(oNamed), "n 5");
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oNamed).IsOk());
    EXPECT_TRUE(oNamed.GetName().IsNull());
}

} // namespace
