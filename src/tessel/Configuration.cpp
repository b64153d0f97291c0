#include <tessel/Configuration.h>

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & Configuration::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & Configuration::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<Configuration>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * Configuration::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

} // namespace tsl
