#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Export.h>

namespace tsl
{

class Value;

/// Base of the iterators over messages and results: moves an index over a fixed number of elements. The
/// derived class implements GetValue and GetName.
///
/// A new iterator is at the end, so a caller calls Begin first. Next after the last element moves to the end,
/// and from the end to the first element. Without elements it is always at the end. One thread at a time uses
/// an iterator.
class TSL_EXPORT MessageConstIterator : public AbstractNamedValueConstIterator<Value>
{
public:
    void Begin() override;
    void End() override;
    void Next() override;
    bool IsEnd() const override;

protected:
    /// For iSize elements.
    explicit MessageConstIterator(int iSize) : m_iSize(iSize) {}

    /// The index of the current element; -1 at the end.
    int GetPosition() const { return m_iPosition; }

private:
    int m_iSize;
    int m_iPosition = -1;
};

} // namespace tsl
