#include "BusSilence.h"

namespace tsl
{

static thread_local int g_iDepth = 0;

BusSilence::BusSilence()
{
    ++g_iDepth;
}

BusSilence::~BusSilence()
{
    --g_iDepth;
}

bool BusSilence::IsOnThisThread()
{
    return g_iDepth > 0;
}

} // namespace tsl
