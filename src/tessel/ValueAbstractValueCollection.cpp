#include <tessel/ValueAbstractValueCollection.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueAbstractValueCollectionConverter.h>

#include <memory>

namespace tsl
{

using Iterator = std::unique_ptr<AbstractConstIterator<Value>>;

template<>
constexpr ClassSource CLASS_SOURCE<ValueAbstractValueCollection>{};
template<>
ClassDescription const &
Described<ValueAbstractValueCollection, Value, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueAbstractValueCollection::DoCopy(Root const & oSource)
{
    // DoCopy is public here, so the class of the source may not have been checked.
    auto const pSource = dynamic_cast<ValueAbstractValueCollection const *>(&oSource);
    if (!pSource)
        XAssertionFailed("pSource", "ValueAbstractValueCollection::DoCopy : oSource ist keine Collection!");

    RemoveAll();
    Iterator const pElement(pSource->GetConstIterator());
    for (pElement->Begin(); !pElement->IsEnd(); pElement->Next())
        Add(pElement->GetValue());
}

ValueConverter const & ValueAbstractValueCollection::GetConverter() const
{
    return LastingObject<ValueAbstractValueCollectionConverter>();
}

Value::eCompare ValueAbstractValueCollection::DoCompareTo(Value const & oOther) const
{
    auto const pOther = dynamic_cast<ValueAbstractValueCollection const *>(&oOther);
    if (!pOther)
        return eNotComparable;
    if (GetCount() != pOther->GetCount())
        return GetCount() < pOther->GetCount() ? eLess : eGreater;
    if (GetCount() == 0)
        return eEqual;

    Iterator const pOwnElement(GetConstIterator());
    Iterator const pOtherElement(pOther->GetConstIterator());
    eCompare eResult = eEqual;
    for (pOwnElement->Begin(); eResult == eEqual && !pOwnElement->IsEnd(); pOwnElement->Next())
    {
        eResult = pOwnElement->GetValue().CompareTo(pOtherElement->GetValue());
        pOtherElement->Next();
    }
    return eResult;
}

} // namespace tsl
