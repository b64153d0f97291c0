#include "TestPrelude.h"

#include <deque>

using namespace tsl;
using namespace tsltest;

namespace tsltest
{

/// A number whose class is up to the test.
class Tree : public ValueInt32
{
public:
    Tree(ClassDescription const & oClass, int iHeight) : ValueInt32(iHeight), m_oClass(oClass) {}
    ClassDescription const & GetClassDesc() const override { return m_oClass; }

private:
    ClassDescription const & m_oClass;
};

template<int I>
class Fresh : public Described<Fresh<I>, Fresh<I - 1>, ClassDescription::eAbstract>
{
};

template<>
class Fresh<0> : public Root
{
};

class Shape : public Described<Shape, Root, ClassDescription::eAbstract>
{
public:
    explicit Shape(int iTheEdges) : iEdges(iTheEdges) {}

    int iEdges;

protected:
    void DoCopy(Root const & oSource) override { iEdges = static_cast<Shape const &>(oSource).iEdges; }
};

} // namespace tsltest

static constexpr int SHAPE_LINE = __LINE__ + 2;
template<>
inline constexpr tsl::ClassSource tsl::CLASS_SOURCE<Shape>{};

namespace
{

class Square : public Described<Square, Shape, ClassDescription::eConcrete, Root>
{
public:
    Square() : Described(4) {}
    using Described::Described;
};

/// Below a described class of a program; must not take the source of its base for its own.
class Tile : public Described<Tile, Square>
{
};

TEST(DescribedClasses, HaveTheirNameFileKindAndBase)
{
    Rows<std::string, ClassDescription const &, char const *, bool, std::string> aRows = {
        {"Shape", Shape::GetStaticClassDesc(), "tests/ClassDescriptionTest.cpp", true, "class tsl::Root"},
        {"Square", Square::GetStaticClassDesc(), "", false, "class tsl::Root"},
        {"Tile", Tile::GetStaticClassDesc(), "", false, "Square"},
        {"Fresh<1>", Fresh<1>::GetStaticClassDesc(), "", true, "class tsl::Root"},
    };
    for (auto const & [sName, oClass, sFile, bAbstract, sBase] : aRows)
    {
        EXPECT_TRUE(std::string(oClass.GetClassName()).ends_with(sName)) << sName;
        EXPECT_STREQ(oClass.GetFile(), sFile) << sName;
        EXPECT_EQ(oClass.IsAbstract(), bAbstract) << sName;
        EXPECT_TRUE(std::string(oClass.GetBaseClassName()).ends_with(sBase)) << sName;
    }
}

TEST(DescribedClasses, AreCopiedByTheirDescriptionUnlessAbstract)
{
    Tile oTile;
    oTile.iEdges = 5;
    std::unique_ptr<Root> const pCopy(oTile.GetCopy());
    Tile const * const pTile = dynamic_cast<Tile const *>(pCopy.get());
    ASSERT_NE(pTile, nullptr);
    EXPECT_EQ(pTile->iEdges, 5);
    EXPECT_EQ(Square(6).iEdges, 6);

    Result const oFailure = Catch([] { Shape::CreateNew(); }).GetResult();
    EXPECT_STREQ(oFailure.GetSourceFile(), "tests/ClassDescriptionTest.cpp");
    EXPECT_EQ(oFailure.GetSourceLine(), SHAPE_LINE);
}

TEST(DescribedClasses, HaveOneDescriptionThatBelongsToTheirLibrary)
{
    // This program has a text of its own for the name, and must not lend it to the library's description.
    ClassDescription const & oClass = ValueInt32::GetStaticClassDesc();
    EXPECT_EQ(&ValueInt32().GetClassDesc(), &oClass);
    EXPECT_EQ(&std::unique_ptr<Root>(ValueInt32::CreateNew())->GetClassDesc(), &oClass);
    EXPECT_NE(static_cast<void const *>(oClass.GetClassName()), GetTypeName<ValueInt32>());
}

TEST(ClassRepositories, HandOutGrowingIdsBaseFirst)
{
    ClassDescription const & oResult = Result::GetStaticClassDesc();
    EXPECT_TRUE(oResult.IsDerivedClass(oResult));
    EXPECT_TRUE(oResult.IsDerivedClass(Root::GetStaticClassDesc()));
    EXPECT_FALSE(Value::GetStaticClassDesc().IsDerivedClass(oResult));

    ClassRepository & oRepository = ClassRepository::Instance();
    for (auto const & [iClassId, pClass] : oRepository.GetClassList())
    {
        EXPECT_EQ(pClass->GetClassId(), iClassId);
        ClassDescription const * const pBase = pClass->GetBaseClassDescription();
        EXPECT_TRUE(!pBase || pBase->GetClassId() < iClassId) << pClass->GetClassName();
    }

    unsigned int iFirst = 0;
    {
        ClassDescription const oFirst("same name", 7, "f", false, &ValueNull::CreateNew, nullptr);
        ClassDescription const oSecond("same name", 7, "f", false, nullptr, &oSecond);
        iFirst = oFirst.GetClassId();
        EXPECT_EQ(oSecond.GetClassId(), iFirst + 1);
        EXPECT_EQ(oSecond.GetBaseClassDescription(), nullptr);
        EXPECT_NE(oFirst, oSecond);
        EXPECT_EQ(oRepository.GetClassDescription(iFirst + 1), &oSecond);
        EXPECT_NE(std::unique_ptr<Root>(oRepository.CreateNew("same name")), nullptr);
    }
    EXPECT_EQ(oRepository.GetClassDescription(iFirst), nullptr);
    EXPECT_EQ(oRepository.CreateNew("same name"), nullptr);
}

TEST(ClassRepositories, MakeObjectsByTheWholeName)
{
    ClassRepository & oRepository = ClassRepository::Instance();
    for (char const * const sName : {"tsl::Result", "class tsl::Resul", static_cast<char const *>(nullptr)})
        EXPECT_EQ(oRepository.CreateNew(sName), nullptr) << (sName ? sName : "null");

    ClassDescription const oStone("class Stone", 0, "f", false, nullptr, nullptr);
    EXPECT_TRUE(Asserts("false", "Unknown", [&] { oRepository.CreateNew("class tsl::Root"); }));
    EXPECT_TRUE(Asserts("fFactory", "ClassRepository::CreateNew : Klasse hat keine Factory-Funktion!",
        [&] { oRepository.CreateNew("class Stone"); }));
    EXPECT_TRUE(
        Asserts("false", "Unknown", [&] { oRepository.CreateNew(&ValueNull::GetStaticClassDesc()); }));
}

TEST(ClassRepositories, ListTheirClasses)
{
    ClassRepository oRepository;
    ClassDescription const oFirst("first", 0, "f", true, nullptr, nullptr);
    std::string const sId = std::to_string(oRepository.Register(oFirst));
    testing::internal::CaptureStdout();
    oRepository.Dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ClassId=" + sId + ", Class=first\n");
}

TEST(ClassRepositories, TakeClassesThatSeveralThreadsTouchFirst)
{
    ClassDescription const * aClasses[8] = {};
    RunOnThreads(8, [&](int i) { aClasses[i] = &Fresh<30>::GetStaticClassDesc(); });
    for (ClassDescription const * const pClass : aClasses)
        EXPECT_EQ(pClass, aClasses[0]);
    EXPECT_TRUE(aClasses[0]->IsDerivedClass(Fresh<1>::GetStaticClassDesc()));
}

TEST(ClassRepositories, FindNamesWhileOthersComeAndGo)
{
    constexpr int iCount = 1000; // the table of names grows on the way
    auto const Register = []
    {
        for (int iTurn = 0; iTurn < 2; ++iTurn)
        {
            std::deque<std::string> oNames;
            std::deque<ClassDescription> oClasses;
            for (int i = 0; i < iCount; ++i)
                oClasses.emplace_back(oNames.emplace_back("class " + std::to_string(i)).c_str(), 0, "f",
                    false, &ValueInt32::CreateNew, nullptr);
        }
    };
    auto const LookUp = []
    {
        for (int i = 0; i < iCount; ++i)
        {
            std::unique_ptr<Root> pObject(ClassRepository::Instance().CreateNew("class tsl::Result"));
            EXPECT_NE(dynamic_cast<Result *>(pObject.get()), nullptr);
            pObject.reset(ClassRepository::Instance().CreateNew(("class " + std::to_string(i)).c_str()));
            EXPECT_EQ(pObject != nullptr, dynamic_cast<ValueInt32 *>(pObject.get()) != nullptr);
        }
    };
    Result::GetStaticClassDesc();
    RunOnThreads(3, [&](int iThread) { iThread == 0 ? Register() : LookUp(); });
    EXPECT_EQ(ClassRepository::Instance().CreateNew("class 999"), nullptr);
}

TEST(RootCopying, TakesTheClassItselfAndWhatIsDerivedFromIt)
{
    auto const fDescribe = [](ClassDescription::FactoryFunction fFactory)
    { return ClassDescription("class Tree", 0, "f", false, fFactory, &ValueInt32::GetStaticClassDesc()); };
    ClassDescription const oNone = fDescribe(nullptr);
    ClassDescription const oNothing = fDescribe([]() -> Root * { return nullptr; });
    Tree oTree(oNone, 2);
    ValueInt32 iNumber(1);
    iNumber.Set(oTree);
    EXPECT_EQ(iNumber, 2);
    EXPECT_TRUE(Asserts("false", "Root::Copy(oSource) : oSource ist nicht von this abgeleitet!",
        [&] { oTree.Set(ValueInt32(3)); }));
    EXPECT_TRUE(Asserts(
        "fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!", [&] { return oTree.GetCopy(); }));
    EXPECT_TRUE(Asserts("pCopy", "Root::GetCopy : Factory-Funktion liefert kein Objekt!",
        [&] { return Tree(oNothing, 1).GetCopy(); }));
}

} // namespace
