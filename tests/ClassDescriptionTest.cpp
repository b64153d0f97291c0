#include "TestPrelude.h"

#include <deque>
#include <iostream>

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

/// One of many classes that nobody has used yet.
template<int I>
class Fresh : public Described<Fresh<I>, Fresh<I - 1>, ClassDescription::eAbstract>
{
};

template<>
class Fresh<0> : public Root
{
};

/// A class of which the description makes no objects.
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

/// Inherits the constructor of its base, and registers another base.
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
    struct Row
    {
        char const * sName;
        ClassDescription const & oClass;
        char const * sFile;
        bool bAbstract;
        char const * sBase;
    };
    Row const aRows[] = {
        {"Shape", Shape::GetStaticClassDesc(), "tests/ClassDescriptionTest.cpp", true, "class tsl::Root"},
        {"Square", Square::GetStaticClassDesc(), "", false, "class tsl::Root"},
        {"Tile", Tile::GetStaticClassDesc(), "", false, "Square"},
        {"Fresh<1>", Fresh<1>::GetStaticClassDesc(), "", true, "class tsl::Root"},
    };
    for (Row const & oRow : aRows)
    {
        SCOPED_TRACE(oRow.sName);
        EXPECT_TRUE(std::string(oRow.oClass.GetClassName()).ends_with(oRow.sName))
            << oRow.oClass.GetClassName();
        EXPECT_STREQ(oRow.oClass.GetFile(), oRow.sFile);
        EXPECT_EQ(oRow.oClass.IsAbstract(), oRow.bAbstract);
        EXPECT_TRUE(std::string(oRow.oClass.GetBaseClassName()).ends_with(oRow.sBase))
            << oRow.oClass.GetBaseClassName();
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

    try
    {
        Shape::CreateNew();
        FAIL();
    }
    catch (Exception const & oException)
    {
        EXPECT_STREQ(oException.GetResult().GetSourceFile(), "tests/ClassDescriptionTest.cpp");
        EXPECT_EQ(oException.GetResult().GetSourceLine(), SHAPE_LINE);
    }
}

TEST(DescribedClasses, HaveOneDescriptionThatBelongsToTheirLibrary)
{
    // This program has a text of its own for the name, and must not lend it to the library's description.
    ClassDescription const & oClass = ValueInt32::GetStaticClassDesc();
    EXPECT_EQ(&ValueInt32().GetClassDesc(), &oClass);
    EXPECT_EQ(&std::unique_ptr<Root>(ValueInt32::CreateNew())->GetClassDesc(), &oClass);
    EXPECT_NE(static_cast<void const *>(oClass.GetClassName()), GetTypeName<ValueInt32>());
}

// What each class of the library is called and derived from, its table of classes shows.
TEST(ClassRepositories, HandOutGrowingIdsBaseFirst)
{
    ClassDescription const & oValue = Value::GetStaticClassDesc();
    ClassDescription const & oResult = Result::GetStaticClassDesc();
    EXPECT_TRUE(oResult.IsDerivedClass(oResult) && oResult.IsDerivedClass(Root::GetStaticClassDesc()));
    EXPECT_FALSE(oValue.IsDerivedClass(oResult) || oResult.IsDerivedClass(ValueNull::GetStaticClassDesc()));

    ClassRepository & oRepository = ClassRepository::Instance();
    for (auto const & [iClassId, pClass] : oRepository.GetClassList())
    {
        EXPECT_EQ(pClass->GetClassId(), iClassId);
        ClassDescription const * const pBase = pClass->GetBaseClassDescription();
        EXPECT_TRUE(!pBase || pBase->GetClassId() < iClassId) << pClass->GetClassName();
    }
    EXPECT_EQ(oRepository.GetClassDescription(0), nullptr);

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
    EXPECT_GT(ClassDescription("later", 0, "f", true, nullptr, nullptr).GetClassId(), iFirst + 1);
}

TEST(ClassRepositories, MakeObjectsByTheWholeName)
{
    ClassRepository & oRepository = ClassRepository::Instance();
    for (char const * const sName :
        {"tsl::Result", "class tsl::Resul", "", static_cast<char const *>(nullptr)})
        EXPECT_EQ(oRepository.CreateNew(sName), nullptr) << (sName ? sName : "null");

    ClassDescription const oStone("class Stone", 0, "f", false, nullptr, nullptr);
    EXPECT_TRUE(Asserts("false", "Unknown", [&] { oRepository.CreateNew("class tsl::Root"); }));
    EXPECT_TRUE(Asserts("fFactory", "ClassRepository::CreateNew : Klasse hat keine Factory-Funktion!",
        [&] { oRepository.CreateNew("class Stone"); }));
    EXPECT_TRUE(
        Asserts("false", "Unknown", [&] { oRepository.CreateNew(&ValueNull::GetStaticClassDesc()); }));
}

TEST(ClassRepositories, TakeANullNameForAnEmptyOne)
{
    {
        ClassDescription const oNameless(nullptr, 0, "f", false, &ValueInt32::CreateNew, nullptr);
        ClassDescription const oDerived("derived", 0, "f", true, nullptr, &oNameless);
        EXPECT_STREQ(oNameless.GetClassName(), "");
        EXPECT_STREQ(oDerived.GetBaseClassName(), "");
        std::unique_ptr<Root> const pObject(ClassRepository::Instance().CreateNew(""));
        EXPECT_NE(dynamic_cast<ValueInt32 *>(pObject.get()), nullptr);
    }
    EXPECT_EQ(ClassRepository::Instance().CreateNew(""), nullptr) << "its entry has gone with it";
}

TEST(ClassRepositories, ListTheirClassesInDecimal)
{
    ClassRepository oRepository;
    ClassRepository const oCopy(oRepository);
    ClassDescription const oFirst("first", 0, "f", true, nullptr, nullptr);
    std::string const sId = std::to_string(oRepository.Register(oFirst));

    std::ostringstream oOutput;
    std::streambuf * const pFormer = std::cout.rdbuf(oOutput.rdbuf());
    std::cout << std::hex;
    oCopy.Dump();
    std::cout << std::dec;
    std::cout.rdbuf(pFormer);
    EXPECT_EQ(oOutput.str(), "ClassId=" + sId + ", Class=first\n");
}

TEST(ClassRepositories, TakeClassesThatSeveralThreadsTouchFirst)
{
    constexpr int iThreads = 8;
    ClassDescription const * aClasses[iThreads] = {};
    RunOnThreads(iThreads, [&](int i) { aClasses[i] = &Fresh<30>::GetStaticClassDesc(); });
    for (ClassDescription const * const pClass : aClasses)
        EXPECT_EQ(pClass, aClasses[0]);
    EXPECT_EQ(ClassRepository::Instance().GetClassDescription(aClasses[0]->GetClassId()), aClasses[0]);
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
    ClassDescription const oOther = fDescribe(&ValueString::CreateNew);

    Tree oTree(oNone, 2);
    ValueInt32 iNumber(1);
    iNumber.Set(oTree);
    EXPECT_EQ(iNumber, 2);
    std::string const sNotDerived = "Root::Copy(oSource) : oSource ist nicht von this abgeleitet!";
    EXPECT_TRUE(Asserts("false", sNotDerived, [&] { oTree.Set(ValueInt32(3)); }));
    EXPECT_EQ(oTree, 2);

    EXPECT_TRUE(Asserts(
        "fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!", [&] { return oTree.GetCopy(); }));
    EXPECT_TRUE(Asserts("pCopy", "Root::GetCopy : Factory-Funktion liefert kein Objekt!",
        [&] { return Tree(oNothing, 1).GetCopy(); }));
    EXPECT_TRUE(Asserts("false", sNotDerived, [&] { return Tree(oOther, 1).GetCopy(); }));
}

} // namespace
