#include <tessel/Tessel.h>

#include <gtest/gtest.h>

// A program that takes in the library's names has classes of its own whose names the library uses only for
// itself. It compiles, also without a namespace of its own.
using namespace tsl;

template<class Lock>
class ReadLock
{
};

class WriteLock
{
};

class FactoryTable
{
};

namespace Detail
{

class Platform
{
};

} // namespace Detail

namespace Details
{

using Table = FactoryTable;

} // namespace Details

TEST(NamesOfAProgram, AreNotTakenByTheLibrarysOwnHelpers)
{
    EXPECT_STREQ(GetTypeName<ReadLock<WriteLock>>(), "class ReadLock<WriteLock>");
    EXPECT_STREQ(GetTypeName<Details::Table>(), "class FactoryTable");
    EXPECT_STREQ(GetTypeName<Detail::Platform>(), "class Detail::Platform");
}
