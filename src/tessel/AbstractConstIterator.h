#pragma once

/// Iterates over elements of type T.
///
///     std::unique_ptr<AbstractConstIterator<tsl::Value>> const pElement(oNumbers.GetConstIterator());
///     for (pElement->Begin(); !pElement->IsEnd(); pElement->Next())
///         pElement->GetValue().AddAsString(sText);
///
/// One thread at a time uses an iterator. Unless a class says otherwise, the iterator must not outlive the
/// elements, and a reference that GetValue returned is valid until the iterator moves.
template<class T>
class AbstractConstIterator
{
public:
    virtual ~AbstractConstIterator() = default;

    /// Moves to the first element, to the end, to the next element. Where an iterator is before Begin is up to the
    /// class.
    virtual void Begin() = 0;
    virtual void End() = 0;
    virtual void Next() = 0;

    /// Whether the iterator is at the end, and if it is not, the element.
    virtual bool IsEnd() const = 0;
    virtual T const & GetValue() const = 0;

protected:
    AbstractConstIterator() = default;
    AbstractConstIterator(AbstractConstIterator const &) = default;
    AbstractConstIterator & operator=(AbstractConstIterator const &) = default;
};

/// Iterates over elements that have names.
template<class T>
class AbstractNamedValueConstIterator : public AbstractConstIterator<T>
{
public:
    /// The name of the element, valid as long as the value.
    virtual char const * GetName() const = 0;
};
