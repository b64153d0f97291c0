#include "r03_work_tessel.h"

namespace tslbench
{

[[gnu::noinline]] tsl::Result Fallible(int iArgument)
{
    if (iArgument < 0) [[unlikely]]
        return tsl::MakeResult(tsl::ERR::eNotFound, "the ini file cannot be opened.");
    return tsl::Result();
}

[[gnu::noinline]] static tsl::Result FallibleTwoDeep(int iArgument)
{
    tsl::Result oResult = Fallible(iArgument);
    if (oResult.IsError()) [[unlikely]]
        return oResult;
    return tsl::Result();
}

[[gnu::noinline]] tsl::Result FallibleThreeDeep(int iArgument)
{
    tsl::Result oResult = FallibleTwoDeep(iArgument);
    if (oResult.IsError()) [[unlikely]]
        return oResult;
    return tsl::Result();
}

} // namespace tslbench
