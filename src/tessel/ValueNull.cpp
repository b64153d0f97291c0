#include <tessel/ValueNull.h>

#include "LastingObject.h"

#include <tessel/ValueNullConverter.h>

namespace tsl
{

ClassDescription const & ValueNull::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueNull::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<ValueNull>(&Value::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueNull::CreateNew()
{
    return new ValueNull;
}

ValueConverter const & ValueNull::GetConverter() const
{
    return LastingObject<ValueNullConverter>();
}

ValueNull const & ValueNull::Null()
{
    return LastingObject<ValueNull>();
}

} // namespace tsl
