// Leaves objects to the registry and shows in which order they are destroyed, while some of them register
// others. Before that, which classes the library knows from the start.

#include <tessel/Tessel.h>

#include <cstdio>
#include <iostream>
#include <memory>

namespace
{

class Announcer
{
public:
    explicit Announcer(char const * sName) : m_sName(sName) {}
    ~Announcer() { std::printf("%s goes\n", m_sName); }
    Announcer(Announcer const &) = delete;
    Announcer & operator=(Announcer const &) = delete;

private:
    char const * m_sName;
};

/// The name of a class that nobody touches until the program has ended.
char const * GetLateClassName()
{
    static tsl::ClassDescription const & oClass =
        *tsl::RegisterStaticObject(new tsl::ClassDescription("late class", 0, "f", true, nullptr, nullptr));
    return tsl::ClassRepository::Instance().GetClassDescription(oClass.GetClassId())->GetClassName();
}

int g_iFollowers = 0;

/// Registers its successor when it goes. That often has the address of one that went before.
class Follower
{
public:
    Follower() { ++g_iFollowers; }
    ~Follower()
    {
        if (g_iFollowers < 100)
            tsl::RegisterStaticObject(new Follower);
        else
            std::printf("%d followers went, %s\n", g_iFollowers, GetLateClassName());
    }
    Follower(Follower const &) = delete;
    Follower & operator=(Follower const &) = delete;
};

/// Shows a value, and reports it, when hardly anything is left.
class LastWord
{
public:
    LastWord() = default;
    ~LastWord() { Tell(7); }
    LastWord(LastWord const &) = delete;
    LastWord & operator=(LastWord const &) = delete;

    static void Tell(int iNumber)
    {
        tsl::ValueString sValue;
        tsl::String const sText(tsl::ValueInt32(iNumber).AddAsString(sValue).c_str());
        std::cout << sText.s_str() << '\n';
        if (tsl::Support::DispatchDebugMessage("Word", sText, __FILE__, __LINE__).IsOk()
            && tsl::Support::DispatchMessage(tsl::MakeResult(iNumber, sText)).IsOk())
            std::cout << "reported\n";
    }
};

void PrintWhetherResultIsKnown()
{
    std::unique_ptr<tsl::Root> const pResult(tsl::ClassRepository::Instance().CreateNew("class tsl::Result"));
    std::puts(pResult ? "Result is known" : "Result is not known");
}

} // namespace

int main()
{
    tsl::RegisterStaticObject(new LastWord);
    PrintWhetherResultIsKnown();
    static_cast<void>(tsl::Result::GetStaticClassDesc());
    PrintWhetherResultIsKnown();

    tsl::RegisterStaticObject(new Announcer("first"));
    tsl::RegisterStaticObject(new Announcer("second"));
    tsl::RegisterStaticObject(new Follower);
    tsl::RegisterStaticObject(new Announcer("last"));
    LastWord::Tell(6);
    std::puts("main ends");
    return 0;
}
