#pragma once

#include <tessel/Described.h>
#include <tessel/ValueAbstractValueCollection.h>

#include <memory>
#include <vector>

/// A collection of values of any classes, in the order in which they were added. It is null until the first change.
class ValueVector : public tsl::Described<ValueVector, tsl::ValueAbstractValueCollection>
{
public:
    ValueVector() = default;
    ValueVector(ValueVector const & oSource);
    ValueVector & operator=(ValueVector const & oSource);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override;

    unsigned int GetCount() const override { return static_cast<unsigned int>(m_vValues.size()); }

    /// Leaves an empty vector, which is not a null one.
    void RemoveAll() override;

    void Add(tsl::Value const & oValue) override;

    /// Owns the value from now on.
    void Add(std::unique_ptr<tsl::Value> pValue);

    bool Contains(tsl::Value const & oValue) const override;
    AbstractConstIterator<tsl::Value> * GetConstIterator() const override;
    void DoCopy(tsl::Root const & oSource) override;

private:
    std::vector<std::unique_ptr<tsl::Value>> m_vValues;
    bool m_bNull = true;
};
