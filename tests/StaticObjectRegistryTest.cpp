#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace tsltest
{

/// An object that holds on to something. Each test has a type of its own, by number.
template<int I>
struct Mortal
{
    std::shared_ptr<int> m_pHeld;
};

class Monarch : public Singleton<Monarch>
{
};

} // namespace tsltest

namespace
{

TEST(StaticObjects, AreRegisteredOnceAndNeverNull)
{
    auto * const pObject = RegisterStaticObject(new Mortal<1>);
    std::string const sInfo =
        "StaticObjectRegistry::RegisterStaticObject : Objekt bereits registriert! Obj: ";
    EXPECT_TRUE(Asserts("false", sInfo + "class tsltest::Mortal<1>", [&] { RegisterStaticObject(pObject); }));
    EXPECT_TRUE(Asserts("false", sInfo + "unsigned int",
        [&] { RegisterStaticObject(reinterpret_cast<unsigned int *>(pObject)); }));
    Mortal<1> * const pNull = nullptr;
    EXPECT_TRUE(
        Asserts("pObj", "RegisterStaticObject : Pointer ist NULL!", [&] { RegisterStaticObject(pNull); }));
    EXPECT_TRUE(Asserts(
        "pObj", "RegisterSingletonObject : Pointer ist NULL!", [&] { RegisterSingletonObject(pNull); }));
    EXPECT_TRUE(Asserts("pObj", "StaticObjectPtr::StaticObjectPtr : Pointer ist NULL!",
        [&] { StaticObjectPtr<Mortal<1>>{pNull}; }));
}

TEST(SingletonObjects, AreReplacedByTheNextEntryWhenTheirTypeIsKnown)
{
    // Descriptions are not told apart, so the first one of all counts as the match.
    static_cast<void>(Root::GetStaticClassDesc());
    auto * const pClass = new ClassDescription("class Unwanted", 0, "f", true, nullptr, nullptr);
    unsigned int const iClassId = pClass->GetClassId();
    RegisterStaticObject(new Mortal<7>);
    RegisterSingletonObject(pClass);
    EXPECT_EQ(ClassRepository::Instance().GetClassDescription(iClassId), nullptr);

    auto const pHeld = std::make_shared<int>();
    auto * const pFirst = new Mortal<2>{pHeld};
    EXPECT_EQ(RegisterSingletonObject(pFirst), pFirst);
    auto * const pNext = RegisterStaticObject(new Mortal<3>);
    EXPECT_EQ(static_cast<void *>(RegisterSingletonObject(new Mortal<2>{pHeld})), pNext);
    RegisterSingletonObject(new Mortal<4>);
    EXPECT_TRUE(
        Asserts("pNext", "StaticObjectRegistry::RegisterSingletonObject : Kein weiteres Objekt registriert!",
            [&] { RegisterSingletonObject(new Mortal<4>{pHeld}); }));
    EXPECT_EQ(pHeld.use_count(), 2) << "the first object lives, and those that were not taken do not";
}

TEST(SingletonObjects, AreMadeOnce)
{
    auto const fMake = [] { return new Monarch; };
    auto const fFail = [] { return static_cast<Monarch *>(nullptr); };
    char const * const sType = "class tsltest::Monarch";
    EXPECT_TRUE(Asserts("pCreatorFunc!=NULL", sType, [] { Monarch::Instance(nullptr); }));
    EXPECT_TRUE(Asserts("pObj!=NULL", sType, [&] { Monarch::Instance(fFail); }));
    Monarch const & oMonarch = Monarch::Instance(fMake);
    EXPECT_EQ(&Monarch::Instance(fMake), &oMonarch);
    EXPECT_EQ(&Monarch::Instance(nullptr), &oMonarch);
}

TEST(StaticObjects, AreListedInTheOrderOfTheirRegistration)
{
    RegisterStaticObject(new Mortal<5>);
    RegisterStaticObject(new Mortal<6>);
    testing::internal::CaptureStdout();
    StaticObjectRegistry::Instance().Dump();
    std::string const sList = testing::internal::GetCapturedStdout();

    // What the library has registered before the program's first line comes first.
    std::size_t iPlace = 0;
    for (std::string const sType : {"tsl::Factory<std::", "tsl::GlobalApplicationIni\n",
             "tsl::GlobalDebugSwitchRegistry\n", "tsl::GlobalMessageDispatcher\n", "tsl::Factory<int, ",
             "tsltest::Mortal<5>\n", "tsltest::Mortal<6>\nStaticObjectRegistry::Dump End"})
    {
        std::size_t const iNext = sList.find(sType, iPlace);
        ASSERT_NE(iNext, std::string::npos) << sType << " in " << sList;
        iPlace = iNext;
    }
}

TEST(StaticObjects, AreDestroyedInTheReverseOrderOfTheirRegistration)
{
    TestProgram const oProgram("StaticObjects");
    EXPECT_EQ(oProgram.Run().sOutput,
        "Result is not known\nResult is known\n6\nreported\nmain "
        "ends\nlast goes\n100 followers went, late class\nsecond goes\nfirst goes\n7\nreported\n");

    // What the last one needs was made after it.
    std::string const sLog = oProgram.ReadFile("Logfile.txt");
    EXPECT_TRUE(Contains(sLog, " DEB Word 7\n"));
    EXPECT_TRUE(Contains(sLog, "Number=7,Text=7,"));
}

} // namespace
