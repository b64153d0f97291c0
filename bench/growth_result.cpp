#include "growth.h"

#include <tessel/Result.h>
#include <tessel/ValueString.h>

using namespace tsl;

namespace
{

Result MakeFailure(int iCode)
{
    return MakeResult(iCode, "a failure with a text of some length");
}

Result WrapByPrevious(int n)
{
    Result oResult = MakeFailure(0);
    for (int i = 1; i <= n; ++i)
    {
        Result oOuter = MakeFailure(i);
        oOuter.SetPrevious(oResult);
        oResult.Clear();
        oResult = oOuter;
    }
    return oResult;
}

Result WrapByInsertFront(int n)
{
    Result oResult = MakeFailure(0);
    for (int i = 1; i <= n; ++i)
        oResult.InsertFront(MakeFailure(i));
    return oResult;
}

Result JoinByAssignment(int n)
{
    Result const oOther = WrapByPrevious(1);
    Result oResult = oOther;
    for (int i = 1; i < n; ++i)
        oResult = oOther;
    return oResult;
}

std::function<void()> Make(Result (*fMake)(int), int n)
{
    return [=] { growth::Require(fMake(n).GetHistorySize() == n); };
}

std::function<void()> Copy(int n)
{
    return [n, oResult = WrapByPrevious(n)]
    {
        for (int i = 0; i < n; ++i)
            growth::Require(Result(oResult).GetHistorySize() == n);
    };
}

std::function<void()> Walk(int n)
{
    return [n, oResult = WrapByPrevious(n)]
    {
        for (int i = 0; i < n; ++i)
            growth::Require(oResult.GetHistory(i).GetErrorCode() == n - 1 - i);
    };
}

} // namespace

std::vector<growth::Work> growth::GetResultWorks()
{
    return {
        {"failure wrapped n deep by SetPrevious", Order::eLinear, 1000,
            [](int n) { return Make(&WrapByPrevious, n); }},
        {"failure wrapped n deep by InsertFront", Order::eLinear, 1000,
            [](int n) { return Make(&WrapByInsertFront, n); }},
        {"n histories joined by assignment", Order::eLinear, 1000,
            [](int n) { return Make(&JoinByAssignment, n); }},
        {"n copies of a failure wrapped n deep", Order::eLinear, 1000, &Copy},
        {"history of n read", Order::eLinearLog, 1000, &Walk},
    };
}
