#include <tessel/Value.h>

#include <tessel/Assertion.h>
#include <tessel/ValueConverter.h>

namespace tsl
{

ClassDescription const & Value::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & Value::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<Value>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * Value::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

Value::eCompare Value::CompareTo(Value const & oOther) const
{
    if (&oOther == this)
        return eEqual;
    if (GetClassDesc() != oOther.GetClassDesc())
        return eNotComparable;
    if (!IsNull() && !oOther.IsNull())
        return DoCompareTo(oOther);
    return IsNull() && oOther.IsNull() ? eEqual : eNotComparable;
}

ValueString & Value::AddAsString(ValueString & s) const
{
    GetConverter().ConvertToText(*this, s);
    return s;
}

} // namespace tsl
