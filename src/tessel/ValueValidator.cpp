#include <tessel/ValueValidator.h>

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & ValueValidator::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueValidator::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<ValueValidator>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * ValueValidator::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

} // namespace tsl
