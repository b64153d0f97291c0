#include "GlobalDebugSwitchRegistry.h"

#include "BusSilence.h"
#include "OwnMutex.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/IniFile.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>
#include <tessel/Support.h>

#include <algorithm>
#include <atomic>
#include <vector>

namespace tsl
{

template class Singleton<GlobalDebugSwitchRegistry>;

namespace
{

std::atomic<bool> g_bGone{false};

/// The level of all log points of one identifier.
struct Switch
{
    String sIdentifier;
    int iLevel;
};

/// The number of a key; 0 if the key is missing or has no number.
int GetNumber(char const * sChapter, String const & sKey)
{
    int iNumber = 0;
    static_cast<void>(Support::GetAppIni().GetInt32(sChapter, sKey, iNumber));
    return iNumber;
}

} // namespace

struct TSL_HIDDEN GlobalDebugSwitchRegistry::Private
{
    // The caller holds the lock.
    void ReadSwitchesOnce();
    void ReadSwitches();

    bool bInitialised = false;
    bool bEnabled = false;
    std::vector<Switch> vSwitches;
    OwnMutex oLock;
};

void GlobalDebugSwitchRegistry::Private::ReadSwitchesOnce()
{
    if (bInitialised)
        return;

    try
    {
        ReadSwitches();
    }
    catch (Exception const &)
    {
        // Without an ini file all switches are off. The global bus has reported the reason.
    }
    bInitialised = true;
}

void GlobalDebugSwitchRegistry::Private::ReadSwitches()
{
    static constexpr char const * sChapter = "Debug/Switch";

    if (GetNumber("Debug", "Enable") < 1)
        return;

    bEnabled = true;
    std::vector<String> vKeys;
    // A missing chapter is the same as an empty one.
    static_cast<void>(Support::GetAppIni().GetKeys(sChapter, vKeys));
    for (String const & sKey : vKeys)
        vSwitches.push_back({sKey, GetNumber(sChapter, sKey)});
}

template<>
constexpr ClassSource CLASS_SOURCE<GlobalDebugSwitchRegistry>{};
template<>
ClassDescription const &
Described<GlobalDebugSwitchRegistry, Singleton<GlobalDebugSwitchRegistry>>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

GlobalDebugSwitchRegistry & GlobalDebugSwitchRegistry::Instance()
{
    static GlobalDebugSwitchRegistry & oRef =
        Singleton<GlobalDebugSwitchRegistry>::Instance(&CreateSingletonInstance);
    return oRef;
}

bool GlobalDebugSwitchRegistry::IsGone()
{
    return g_bGone.load(std::memory_order_acquire);
}

GlobalDebugSwitchRegistry::GlobalDebugSwitchRegistry() : m(std::make_unique<Private>()) {}

GlobalDebugSwitchRegistry::~GlobalDebugSwitchRegistry()
{
    g_bGone.store(true, std::memory_order_release);
}

int GlobalDebugSwitchRegistry::RegisterLogPoint(
    int * pLevel, char const * sIdentifier, char const * sFile, int iLine)
{
    if (pLevel == nullptr)
        XAssertionFailed("pLevel!=NULL",
            String("Invalid registration. Identifier=") + sIdentifier + " in " + sFile + ", " + iLine);

    WriteLock const oScope(m->oLock);
    m->ReadSwitchesOnce();
    *pLevel = 0;
    if (!m->bEnabled)
        return 0;

    auto const oSwitch = std::find_if(m->vSwitches.begin(), m->vSwitches.end(),
        [&](Switch const & oEntry) { return oEntry.sIdentifier == sIdentifier; });
    if (oSwitch != m->vSwitches.end())
        *pLevel = oSwitch->iLevel;
    return *pLevel;
}

GlobalDebugSwitchRegistry * GlobalDebugSwitchRegistry::CreateSingletonInstance()
{
    BusSilence const oScope;
    return new GlobalDebugSwitchRegistry;
}

} // namespace tsl
