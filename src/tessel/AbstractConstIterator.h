#pragma once

/// A walk over elements of type T. Begin stands on the first element; whether a new iterator does so
/// already is told where it is handed out. GetValue is valid until the walk moves on. An iterator is used
/// by one thread at a time and must not outlive what it walks over, unless told otherwise.
template<class T>
class AbstractConstIterator
{
public:
    virtual ~AbstractConstIterator() = default;

    virtual void Begin() = 0;
    virtual void End() = 0;
    virtual void Next() = 0;
    virtual bool IsEnd() const = 0;
    virtual T const & GetValue() const = 0;

protected:
    AbstractConstIterator() = default;
    AbstractConstIterator(AbstractConstIterator const &) = default;
    AbstractConstIterator & operator=(AbstractConstIterator const &) = default;
};

/// A walk over elements that have names.
template<class T>
class AbstractNamedValueConstIterator : public AbstractConstIterator<T>
{
public:
    virtual char const * GetName() const = 0;
};
