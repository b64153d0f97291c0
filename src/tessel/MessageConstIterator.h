#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Export.h>

namespace tsl
{

class Value;

/// The walk that iterators over messages and over results share. A new iterator is at the end, and so is one
/// that Next has taken past the last element; a further Next begins again.
class TSL_EXPORT MessageConstIterator : public AbstractNamedValueConstIterator<Value>
{
public:
    void Begin() override;
    void End() override;
    void Next() override;
    bool IsEnd() const override;

protected:
    explicit MessageConstIterator(int iSize) : m_iSize(iSize) {}

    /// Index of the current element, -1 at the end.
    int GetPosition() const { return m_iPosition; }

private:
    int m_iSize;
    int m_iPosition = -1;
};

} // namespace tsl
