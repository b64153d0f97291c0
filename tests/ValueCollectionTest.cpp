#include "AssertionTest.h"

using namespace tsl;
using namespace tsltest;

namespace
{

using CollectionLayout = ValueAbstractValueCollectionConverterLayout;

int g_iIterators = 0;

/// A collection as a program would write one. Its iterators are counted.
class Values : public ValueAbstractValueCollection
{
public:
    Values() = default;
    explicit Values(std::vector<int> const & vNumbers)
    {
        for (int const iNumber : vNumbers)
            Add(ValueInt32(iNumber));
    }
    Values(Values const & oSource) : ValueAbstractValueCollection(oSource) { Set(oSource); }
    Values & operator=(Values const & oSource)
    {
        Set(oSource);
        return *this;
    }

    ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    static ClassDescription const & GetStaticClassDesc()
    {
        static ClassDescription const & oDescription = DescribeClass<Values>(
            &ValueAbstractValueCollection::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
        return oDescription;
    }
    static Root * CreateNew() { return new Values; }

    bool IsNull() const override { return m_bNull; }
    void SetNull() override
    {
        m_bNull = true;
        m_vValues.clear();
    }

    unsigned int GetCount() const override { return static_cast<unsigned int>(m_vValues.size()); }
    void RemoveAll() override { m_vValues.clear(); }
    void Add(Value const & oValue) override
    {
        m_vValues.emplace_back(static_cast<Value *>(oValue.GetCopy()));
    }
    bool Contains(Value const &) const override { return false; }

    ClassDescription const * GetElementClass(unsigned int ix) const { return &m_vValues[ix]->GetClassDesc(); }

    AbstractConstIterator<Value> * GetConstIterator() const override { return new Iterator(m_vValues); }

private:
    using Storage = std::vector<std::unique_ptr<Value>>;

    class Iterator : public AbstractConstIterator<Value>
    {
    public:
        explicit Iterator(Storage const & vValues) : m_vValues(vValues) { ++g_iIterators; }
        ~Iterator() override { --g_iIterators; }
        void Begin() override { m_ix = 0; }
        void End() override { m_ix = m_vValues.size(); }
        void Next() override { ++m_ix; }
        bool IsEnd() const override { return m_ix >= m_vValues.size(); }
        Value const & GetValue() const override { return *m_vValues.at(m_ix); }

    private:
        Storage const & m_vValues;
        std::size_t m_ix = 0;
    };

    bool m_bNull = false;
    Storage m_vValues;
};

TEST(ValueCollectionText, ListsTheElementsInTheirLayouts)
{
    EXPECT_EQ(GetText(Values()), "()");
    Values oMixed({1});
    oMixed.Add(ValueString("${dump}"));
    oMixed.Add(ValueInt32());
    oMixed.Add(Values({2, 3}));
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
    EXPECT_EQ(GetText(Values({1}), CollectionLayout("${Dump} ${null}")), "${Dump} false");
    EXPECT_EQ(GetText(Values({1}), ValueIntegerConverterLayout("${dump}")), "${dump}");

    // A named value's layout is a collection layout, too; a number is no collection.
    EXPECT_EQ(GetText(Values({1}), NamedValueConverterLayout("${dump}")), "(1)");
    ValueString sText("");
    Values().GetConverter().ConvertToText(ValueInt32(1), sText);
    EXPECT_EQ(sText, "${dump}");
}

TEST(ValueCollectionText, LeavesNoIteratorBehindWhenAnElementFails)
{
    Values oValues({1, 2});
    CollectionLayout oLayout;
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%n}"));
    EXPECT_TRUE(Asserts("false", "ValueConverter : Ungültiger Formatstring! String : \"%n\"",
        [&] { GetText(oValues, oLayout); }));
    EXPECT_EQ(g_iIterators, 0);
    oLayout.AddLayout(new ValueIntegerConverterLayout("${%03d}"));
    EXPECT_EQ(GetText(oValues, CollectionLayout(oLayout)), "(001,002)");

    ValueConverter const & oConverter = oValues.GetConverter();
    EXPECT_TRUE(Asserts(
        "0", "not implemented", [&] { static_cast<void>(oConverter.ConvertFromText("(1)", oValues)); }));
    EXPECT_EQ(oValues.GetCount(), 2u);
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oValues).IsOk());
    EXPECT_TRUE(oValues.IsNull());
}

TEST(ValueCollectionCopying, ReplacesAllElementsByCopies)
{
    Values oSource({1, 2});
    oSource.Add(ValueString("x"));
    Values oTarget({7, 8, 9, 10});
    oTarget = oSource;
    oSource.RemoveAll();
    EXPECT_EQ(GetText(oTarget), "(1,2,x)");
    EXPECT_EQ(oTarget.GetElementClass(2), &ValueString::GetStaticClassDesc());

    oTarget = *&oTarget;
    EXPECT_TRUE(Asserts("pSource", "ValueAbstractValueCollection::DoCopy : oSource ist keine Collection!",
        [&] { oTarget.DoCopy(ValueInt32(1)); }));
    EXPECT_EQ(GetText(oTarget), "(1,2,x)");
    EXPECT_EQ(g_iIterators, 0);
}

TEST(ValueCollectionComparing, CountsFirstAndThenLooksForTheFirstDifference)
{
    Values oText;
    oText.Add(ValueString("1"));
    Values oNull;
    oNull.Add(ValueInt32());
    Rows<Values, Values, Value::eCompare> aRows = {{Values(), Values(), Value::eEqual},
        {Values({9}), Values({1, 1}), Value::eLess}, {Values({1, 1}), Values({9}), Value::eGreater},
        {Values({1, 2, 3}), Values({1, 2, 3}), Value::eEqual},
        {Values({1, 2, 9}), Values({1, 3, 0}), Value::eLess},
        {Values({1, 3, 0}), Values({1, 2, 9}), Value::eGreater}, {Values({1}), oText, Value::eNotComparable},
        {oNull, oNull, Value::eEqual}, {oNull, Values({1}), Value::eNotComparable}};
    for (auto const & [oLeft, oRight, eExpected] : aRows)
        EXPECT_EQ(oLeft.CompareTo(oRight), eExpected) << GetText(oLeft) << " and " << GetText(oRight);
    EXPECT_EQ(Values().DoCompareTo(ValueInt32(1)), Value::eNotComparable);
    EXPECT_EQ(g_iIterators, 0);
}

} // namespace
