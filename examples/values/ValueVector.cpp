#include "ValueVector.h"

#include <algorithm>

namespace
{

class ValueVectorConstIterator : public AbstractConstIterator<tsl::Value>
{
public:
    explicit ValueVectorConstIterator(std::vector<std::unique_ptr<tsl::Value>> const & vValues)
        : m_vValues(vValues)
    {
    }

    void Begin() override { m_ix = 0; }
    void End() override { m_ix = m_vValues.size(); }
    void Next() override { ++m_ix; }
    bool IsEnd() const override { return m_ix >= m_vValues.size(); }
    tsl::Value const & GetValue() const override { return *m_vValues.at(m_ix); }

private:
    std::vector<std::unique_ptr<tsl::Value>> const & m_vValues;
    std::size_t m_ix = 0;
};

} // namespace

ValueVector::ValueVector(ValueVector const & oSource) : Described(oSource)
{
    Set(oSource);
}

ValueVector & ValueVector::operator=(ValueVector const & oSource)
{
    Set(oSource);
    return *this;
}

void ValueVector::SetNull()
{
    m_vValues.clear();
    m_bNull = true;
}

void ValueVector::RemoveAll()
{
    m_vValues.clear();
    m_bNull = false;
}

void ValueVector::Add(tsl::Value const & oValue)
{
    Add(std::unique_ptr<tsl::Value>(static_cast<tsl::Value *>(oValue.GetCopy())));
}

void ValueVector::Add(std::unique_ptr<tsl::Value> pValue)
{
    m_vValues.push_back(std::move(pValue));
    m_bNull = false;
}

bool ValueVector::Contains(tsl::Value const & oValue) const
{
    return std::any_of(m_vValues.begin(), m_vValues.end(),
        [&](auto const & pValue) { return pValue->CompareTo(oValue) == tsl::Value::eEqual; });
}

AbstractConstIterator<tsl::Value> * ValueVector::GetConstIterator() const
{
    return new ValueVectorConstIterator(m_vValues);
}

void ValueVector::DoCopy(tsl::Root const & oSource)
{
    ValueAbstractValueCollection::DoCopy(oSource);

    // The base copies the elements, but not the state null.
    m_bNull = static_cast<ValueVector const &>(oSource).m_bNull;
}
