#include "TestPrelude.h"

#include "../examples/values/ValueVector.h"

using namespace tsl;
using namespace tsltest;

namespace
{

using CollectionLayout = ValueAbstractValueCollectionConverterLayout;

ValueVector MakeVector(std::vector<int> const & vNumbers)
{
    ValueVector oVector;
    oVector.RemoveAll();
    for (int const iNumber : vNumbers)
        oVector.Add(ValueInt32(iNumber));
    return oVector;
}

TEST(ValueCollectionText, ListsTheElementsInTheirLayouts)
{
    EXPECT_EQ(GetText(MakeVector({})), "()");
    ValueVector oMixed = MakeVector({1});
    oMixed.Add(ValueString("${dump}"));
    oMixed.Add(ValueInt32());
    oMixed.Add(MakeVector({2, 3}));
    oMixed.Add(NamedValue("n", ValueInt32(4)));
    EXPECT_EQ(GetText(oMixed), "(1,${dump},NULL,(2,3),n 4)");

    // Inner collections and named values have lists of layouts of their own.
    CollectionLayout oLayout("${dump}!", "none");
    oLayout.SetCollPrePostfix("[", "]");
    oLayout.SetSeparator(" | ");
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%02d}"));
    auto const pNamedLayout = new NamedValueConverterLayout("${name}=${value}");
    pNamedLayout->AddLayout(new ValueIntegerConverterLayout("${%x}h"));
    oLayout.AddLayout(pNamedLayout);
    auto const pInnerLayout = new CollectionLayout;
    pInnerLayout->SetSeparator(";");
    oLayout.AddLayout(pInnerLayout);
    EXPECT_EQ(GetText(oMixed, oLayout), "[01 | ${dump} | NULL | (2;3) | n=4h]!");

    oMixed.SetNull();
    EXPECT_EQ(GetText(oMixed, oLayout), "none");
}

TEST(ValueCollectionText, KnowsDumpAloneAndOnlyWithACollectionLayout)
{
    ValueVector oVector = MakeVector({1});
    EXPECT_EQ(GetText(oVector, CollectionLayout("${Dump} ${null}")), "${Dump} false");
    EXPECT_EQ(GetText(oVector, ValueIntegerConverterLayout("${dump}")), "${dump}");

    // A named value's layout is a collection layout, too; a number is no collection.
    EXPECT_EQ(GetText(oVector, NamedValueConverterLayout("${dump}")), "(1)");
    ValueConverter const & oConverter = oVector.GetConverter();
    ValueString sText("");
    oConverter.ConvertToText(ValueInt32(1), sText);
    EXPECT_EQ(sText, "${dump}");

    // An element fails in the middle of the list.
    CollectionLayout oLayout;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%n}"));
    EXPECT_TRUE(Asserts("false", "ValueConverter : Ungültiger Formatstring! String : \"%n\"",
        [&] { GetText(oVector, oLayout); }));

    EXPECT_TRUE(Asserts(
        "0", "not implemented", [&] { static_cast<void>(oConverter.ConvertFromText("(1)", oVector)); }));
    EXPECT_EQ(oVector.GetCount(), 1u);
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oVector).IsOk());
    EXPECT_TRUE(oVector.IsNull());
}

TEST(ValueCollectionCopying, ReplacesAllElementsByCopies)
{
    ValueVector oSource = MakeVector({1, 2});
    oSource.Add(ValueString("x"));
    ValueVector oTarget = MakeVector({7, 8, 9, 10});
    oTarget = oSource;
    EXPECT_EQ(oTarget.CompareTo(oSource), Value::eEqual);
    oSource.RemoveAll();
    oTarget = *&oTarget;
    EXPECT_TRUE(Asserts("pSource", "ValueAbstractValueCollection::DoCopy : oSource ist keine Collection!",
        [&] { oTarget.DoCopy(ValueInt32(1)); }));
    EXPECT_EQ(GetText(oTarget), "(1,2,x)");
}

TEST(ValueCollectionComparing, CountsFirstAndThenLooksForTheFirstDifference)
{
    ValueVector oText;
    oText.Add(ValueString("1"));
    ValueVector oNull;
    oNull.Add(ValueInt32());
    Rows<ValueVector, ValueVector, Value::eCompare> aRows = {
        {MakeVector({}), MakeVector({}), Value::eEqual},
        {MakeVector({9}), MakeVector({1, 1}), Value::eLess},
        {MakeVector({1, 2, 9}), MakeVector({1, 3, 0}), Value::eLess},
        {MakeVector({1}), oText, Value::eNotComparable},
        {oNull, oNull, Value::eEqual},
        {oNull, MakeVector({1}), Value::eNotComparable},
    };
    for (auto const & [oLeft, oRight, eExpected] : aRows)
        EXPECT_EQ(oLeft.CompareTo(oRight), eExpected) << GetText(oLeft) << " and " << GetText(oRight);
    EXPECT_EQ(oText.DoCompareTo(ValueInt32(1)), Value::eNotComparable);
}

} // namespace
