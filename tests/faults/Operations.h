#pragma once

#include <vector>

namespace tslfaults
{

enum class Outcome
{
    eDone,
    eFailed, ///< it says so
    eWrong   ///< it says that it is done, and is not
};

/// Something that a user does with the library, and may do again and again, on any thread. What it throws counts
/// as a failure that it tells.
struct Operation
{
    char const * sName;
    Outcome (*fDo)();
};

/// All that the sweep covers: a new one is a row of this table.
std::vector<Operation> const & GetOperations();

} // namespace tslfaults
