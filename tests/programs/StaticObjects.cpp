// Leaves objects to the registry and shows in which order they go, while some of them register others.

#include <tessel/ClassRepository.h>
#include <tessel/StaticObjectRegistry.h>

#include <cstdio>

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

} // namespace

int main()
{
    static_cast<void>(tsl::ClassRepository::Instance());
    tsl::RegisterStaticObject(new Announcer("first"));
    tsl::RegisterStaticObject(new Announcer("second"));
    tsl::RegisterStaticObject(new Follower);
    tsl::RegisterStaticObject(new Announcer("last"));
    std::puts("main ends");
    return 0;
}
