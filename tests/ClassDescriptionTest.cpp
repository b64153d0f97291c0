#include "AssertionTest.h"

#include <iostream>

using namespace tsl;
using namespace tsltest;

namespace tsltest
{

/// An object with a number as its state. Its class is up to the test.
class Plant : public Root
{
public:
    Plant(ClassDescription const & oClass, int iHeight) : m_iHeight(iHeight), m_oClass(oClass)
    {
        ++s_iLiving;
    }
    Plant(Plant const &) = delete;
    ~Plant() override { --s_iLiving; }

    ClassDescription const & GetClassDesc() const override { return m_oClass; }

    int m_iHeight;
    static inline int s_iLiving = 0;

protected:
    void DoCopy(Root const & oSource) override { m_iHeight = static_cast<Plant const &>(oSource).m_iHeight; }

private:
    ClassDescription const & m_oClass;
};

/// One of many classes that nobody has used yet.
template<int I>
class Fresh : public Root
{
public:
    static ClassDescription const & GetStaticClassDesc()
    {
        static ClassDescription const & oDescription = DescribeClass<Fresh>(
            &Fresh<I - 1>::GetStaticClassDesc(), ClassDescription::eAbstract, &Root::CreateNew);
        return oDescription;
    }
};

template<>
class Fresh<0> : public Root
{
};

} // namespace tsltest

namespace
{

char const * const COPY_INFO = "Root::Copy(oSource) : oSource ist nicht von this abgeleitet!";

/// The class of what MakePlant makes; nothing is made without one.
ClassDescription const * g_pMade = nullptr;

Root * MakePlant()
{
    return g_pMade ? new Plant(*g_pMade, 0) : nullptr;
}

TEST(ClassDescriptions, TellNameKindAndWhatTheyAreDerivedFrom)
{
    ClassDescription const & oFresh = Fresh<1>::GetStaticClassDesc();
    EXPECT_STREQ(oFresh.GetClassNameA(), "class tsltest::Fresh<1>");
    EXPECT_STREQ(oFresh.GetFile(), "tests/ClassDescriptionTest.cpp");
    EXPECT_EQ(GetTypeName(typeid(Plant)), "class tsltest::Plant");
    EXPECT_STREQ(GetTypeName<unsigned int>(), "unsigned int");

    ClassDescription const & oValue = Value::GetStaticClassDesc();
    ClassDescription const & oResult = Result::GetStaticClassDesc();
    EXPECT_TRUE(oResult.IsDerivedClass(oResult) && oResult.IsDerivedClass(oValue));
    EXPECT_TRUE(oResult.IsDerivedClass(Root::GetStaticClassDesc()));
    EXPECT_FALSE(oValue.IsDerivedClass(oResult));
    EXPECT_FALSE(oResult.IsDerivedClass(ValueNull::GetStaticClassDesc()));
}

TEST(ClassRepositories, HandOutGrowingIdsBaseFirst)
{
    ClassRepository & oRepository = ClassRepository::Instance();
    static_cast<void>(Result::GetStaticClassDesc());
    for (auto const & [iClassId, pClass] : oRepository.GetClassList())
    {
        EXPECT_EQ(pClass->GetClassId(), iClassId);
        EXPECT_EQ(oRepository.GetClassDescription(iClassId), pClass);
        if (ClassDescription const * const pBase = pClass->GetBaseClassDescription())
        {
            EXPECT_LT(pBase->GetClassId(), iClassId) << pClass->GetClassName();
        }
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
    std::unique_ptr<Root> const pNew(oRepository.CreateNew(Result::GetStaticClassDesc().GetClassName()));
    ASSERT_NE(pNew, nullptr);
    EXPECT_EQ(pNew->GetClassDesc(), Result::GetStaticClassDesc());
    for (char const * const sName : {"tsl::Result", "class tsl::result", "class tsl::Resul", "", "class x"})
        EXPECT_EQ(oRepository.CreateNew(sName), nullptr) << sName;
    EXPECT_EQ(oRepository.CreateNew(static_cast<char const *>(nullptr)), nullptr);

    ClassDescription const oStone("class Stone", 0, "f", false, nullptr, nullptr);
    EXPECT_TRUE(Asserts("false", "Unknown", [&] { oRepository.CreateNew("class tsl::Root"); }));
    EXPECT_TRUE(Asserts("fFactory", "ClassRepository::CreateNew : Klasse hat keine Factory-Funktion!",
        [&] { oRepository.CreateNew("class Stone"); }));
    EXPECT_TRUE(
        Asserts("false", "Unknown", [&] { oRepository.CreateNew(&ValueNull::GetStaticClassDesc()); }));
}

TEST(ClassRepositories, ListTheirClassesInDecimal)
{
    ClassRepository oRepository;
    ClassRepository const oCopy(oRepository);
    ClassDescription const oFirst("first", 0, "f", true, nullptr, nullptr);
    unsigned int const iFirst = oRepository.Register(oFirst);
    unsigned int const iSecond = oRepository.Register(Root::GetStaticClassDesc());

    std::ostringstream oOutput;
    std::streambuf * const pFormer = std::cout.rdbuf(oOutput.rdbuf());
    std::cout << std::hex;
    oCopy.Dump();
    std::cout << std::dec;
    std::cout.rdbuf(pFormer);
    EXPECT_EQ(oOutput.str(), "ClassId=" + std::to_string(iFirst) + ", Class=first\nClassId="
                                 + std::to_string(iSecond) + ", Class=class tsl::Root\n");
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

TEST(RootCopying, TakesTheClassItselfAndWhatIsDerivedFromIt)
{
    ClassDescription const oPlantClass("class Plant", 0, "f", false, &MakePlant, nullptr);
    ClassDescription const oTreeClass("class Tree", 0, "f", false, &MakePlant, &oPlantClass);
    Plant oPlant(oPlantClass, 1);
    Plant oTree(oTreeClass, 2);
    oPlant.Set(oTree);
    EXPECT_EQ(oPlant.m_iHeight, 2);

    oPlant.m_iHeight = 3;
    EXPECT_TRUE(Asserts("false", COPY_INFO, [&] { oTree.Set(oPlant); }));
    EXPECT_TRUE(Asserts("false", COPY_INFO, [&] { oTree.Set(ValueNull()); }));
    EXPECT_EQ(oTree.m_iHeight, 2);

    g_pMade = &oTreeClass;
    std::unique_ptr<Root> const pCopy(oTree.GetCopy());
    EXPECT_EQ(static_cast<Plant &>(*pCopy).m_iHeight, 2);
}

TEST(RootCopying, FreesWhatAFailingCopyHasMade)
{
    ClassDescription const oClass("class Plant", 0, "f", false, &MakePlant, nullptr);
    ClassDescription const oOtherClass("class Tree", 0, "f", false, &MakePlant, &oClass);
    Plant const oPlant(oClass, 5);
    g_pMade = &oOtherClass;
    EXPECT_TRUE(Asserts("false", COPY_INFO, [&] { static_cast<void>(oPlant.GetCopy()); }));
    EXPECT_EQ(Plant::s_iLiving, 1);

    g_pMade = nullptr;
    EXPECT_TRUE(Asserts("pCopy", "Root::GetCopy : Factory-Funktion liefert kein Objekt!",
        [&] { static_cast<void>(oPlant.GetCopy()); }));
    ClassDescription const oStone("class Stone", 0, "f", false, nullptr, nullptr);
    EXPECT_TRUE(Asserts("fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!",
        [&] { static_cast<void>(Plant(oStone, 1).GetCopy()); }));
}

} // namespace
