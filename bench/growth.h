#pragma once

#include <functional>
#include <vector>

namespace growth
{

/// The order in which the time of a work grows with its size n.
enum class Order
{
    eLinear,
    eLinearLog, ///< n log n
    eSquare
};

/// A work whose time is measured at several sizes.
struct Work
{
    char const * sName;
    Order eOrder; ///< promised
    int iSize;    ///< the smallest n

    /// Prepares the work of size n and returns the function to measure, which may be called any number of times.
    std::function<std::function<void()>(int)> fPrepare;
};

std::vector<Work> GetBusWorks();
std::vector<Work> GetIniWorks();
std::vector<Work> GetJobWorks();
std::vector<Work> GetResultWorks();
std::vector<Work> GetTaskWorks();
std::vector<Work> GetValueWorks();

/// Ends the program unless a work has done what it should do.
void Require(bool bDone);

} // namespace growth
