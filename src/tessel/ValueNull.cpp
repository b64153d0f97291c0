#include <tessel/ValueNull.h>

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
    static ValueNullConverter const & oConverter = *RegisterLastingObject(new ValueNullConverter);
    return oConverter;
}

ValueNull const & ValueNull::Null()
{
    static ValueNull const & oNull = *RegisterLastingObject(new ValueNull);
    return oNull;
}

} // namespace tsl
