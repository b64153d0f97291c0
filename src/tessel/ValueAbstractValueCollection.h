#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

namespace tsl
{

/// Abstract base of a value that contains other values. The derived class stores the elements; this class
/// copies, compares and writes them.
///
///     oNumbers.Add(ValueInt32(1));
///     oNumbers.Add(ValueInt32(2));
///     oNumbers.AddAsString(sText);
///
/// The collection owns its elements, which are copies and may have any value classes. A
/// ValueAbstractValueCollectionConverterLayout defines its text; it cannot be read from text. Copying,
/// comparing and writing take one pass over the elements. One thread at a time uses an object.
class TSL_EXPORT ValueAbstractValueCollection
    : public Described<ValueAbstractValueCollection, Value, ClassDescription::eAbstract>
{
public:
    /// Replaces all elements by copies of the source's elements. The former elements are deleted first, so
    /// the source must not be part of them. A source that is no collection is an assertion failure.
    void DoCopy(Root const & oSource) override;

    ValueConverter const & GetConverter() const override;

    /// The collection with fewer elements is less. With equal counts, the first pair of elements that are not
    /// equal decides. eNotComparable for an argument that is no collection.
    eCompare DoCompareTo(Value const & oOther) const override;

    /// The number of elements, and deletes all of them.
    virtual unsigned int GetCount() const = 0;
    virtual void RemoveAll() = 0;

    /// Appends a copy of the value.
    virtual void Add(Value const & oValue) = 0;

    /// Whether an element equals the value. The library itself does not call it.
    virtual bool Contains(Value const & oValue) const = 0;

    /// A new iterator at the first element; the caller deletes it. It is valid until the collection changes.
    virtual AbstractConstIterator<Value> * GetConstIterator() const = 0;

protected:
    ValueAbstractValueCollection() = default;
    ~ValueAbstractValueCollection() override = default;
    ValueAbstractValueCollection(ValueAbstractValueCollection const &) = default;
    ValueAbstractValueCollection & operator=(ValueAbstractValueCollection const &) = default;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueAbstractValueCollection, Value, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
