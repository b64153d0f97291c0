#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

namespace tsl
{

/// Base of a value that holds many others. How they are kept is the business of the derived class; how
/// such a collection is copied, compared and written is told here.
///
/// Elements are copies that the collection owns, of any classes. The text is made through a
/// ValueAbstractValueCollectionConverterLayout; a collection cannot be read from text. To
/// copy, to compare and to write takes one walk over the elements.
class TSL_EXPORT ValueAbstractValueCollection
    : public Described<ValueAbstractValueCollection, Value, ClassDescription::eAbstract>
{
public:
    /// Replaces all elements by copies of the source's elements; the former elements go first, so the
    /// source must not be one of them or a part of one. A source that is no collection is an assertion
    /// failure.
    void DoCopy(Root const & oSource) override;

    ValueConverter const & GetConverter() const override;

    /// The collection with fewer elements is less, whatever they are. At equal counts, the first pair of
    /// elements that CompareTo does not find equal decides. Not comparable with what is no collection.
    eCompare DoCompareTo(Value const & oOther) const override;

    virtual unsigned int GetCount() const = 0;
    virtual void RemoveAll() = 0;

    /// Appends a copy of the value.
    virtual void Add(Value const & oValue) = 0;

    /// Whether an element equals the value. The library itself does not ask.
    virtual bool Contains(Value const & oValue) const = 0;

    /// A new walk that stands on the first element; the caller deletes it. It holds until the collection
    /// changes.
    virtual AbstractConstIterator<Value> * GetConstIterator() const = 0;

protected:
    ValueAbstractValueCollection() = default;
    ~ValueAbstractValueCollection() override = default;
    ValueAbstractValueCollection(ValueAbstractValueCollection const &) = default;
    ValueAbstractValueCollection & operator=(ValueAbstractValueCollection const &) = default;
};

extern template ClassDescription const &
Described<ValueAbstractValueCollection, Value, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
