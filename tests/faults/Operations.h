#pragma once

#include <tessel/Result.h>

#include <functional>
#include <vector>

namespace tslfaults
{

class Outcome
{
public:
    enum State
    {
        eDone,
        eFailed, ///< it says so
        eWrong   ///< it says that it is done, and is not
    };

    Outcome(State eState_) : eState(eState_) {}
    Outcome(bool bRight) : eState(bRight ? eDone : eWrong) {}
    /// A failure, or else whether the outcome is right.
    Outcome(tsl::Result const & oResult, bool bRight = true)
        : eState(oResult.IsError() ? eFailed : Outcome(bRight).eState)
    {
    }

    State eState;
};

/// Something that a user does with the library, and may do again and again, on any thread. What it throws counts
/// as a failure that it reports.
struct Operation
{
    char const * sName;
    std::function<Outcome()> fDo;
};

std::vector<Operation> const & GetOperations();

} // namespace tslfaults
