#include "r12_objects_tessel.h"

namespace tslbench
{

static_assert(sizeof(Record) == 96);

tsl::ClassDescription const & Record::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & Record::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Record>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * Record::CreateNew()
{
    return new Record;
}

tsl::ClassDescription const & Record1::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & Record1::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Record1>(
        &Record::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * Record1::CreateNew()
{
    return new Record1;
}

tsl::ClassDescription const & Record2::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & Record2::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Record2>(
        &Record1::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * Record2::CreateNew()
{
    return new Record2;
}

tsl::ClassDescription const & Record3::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & Record3::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Record3>(
        &Record2::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * Record3::CreateNew()
{
    return new Record3;
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> Record::GetConstIterator() const
{
    return tsl::Message::GetConstIterator();
}

void Record::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<Record const &>(oSource);
}

} // namespace tslbench
