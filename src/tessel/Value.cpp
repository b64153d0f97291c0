#include <tessel/Value.h>

#include <tessel/ValueConverter.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<Value>{};
template<>
ClassDescription const & Described<Value, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that the vtable and the type_info of the class are in the library only.
ClassDescription const & Value::GetClassDesc() const
{
    return GetStaticClassDesc();
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
