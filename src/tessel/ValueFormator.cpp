#include <tessel/ValueFormator.h>

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & ValueFormator::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueFormator::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<ValueFormator>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * ValueFormator::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

} // namespace tsl
