#include "growth.h"

#include <tessel/NamedValue.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/String.h>
#include <tessel/ValueAbstractValueCollection.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <memory>

using namespace tsl;

namespace
{

std::function<void()> AppendText(int n)
{
    return [n]
    {
        String sText;
        for (int i = 0; i < n; ++i)
            sText << "word " << i;
        growth::Require(sText.Find(String("word ") + (n - 1)) > 0);
    };
}

std::function<void()> ReplaceText(int n)
{
    return [n]
    {
        String sText;
        for (int i = 0; i < n; ++i)
            sText << "old ";
        int iPlace = 0;
        for (int i = 0; i < n; ++i)
            iPlace = sText.Replace("old", "new", static_cast<unsigned int>(iPlace));
        growth::Require(iPlace == (n - 1) * 4);
    };
}

/// The registry keeps its objects, so it grows with every call.
std::function<void()> RegisterObjects(int n)
{
    return [n]
    {
        for (int i = 0; i < n; ++i)
            growth::Require(RegisterStaticObject(new int(i)) != nullptr);
    };
}

/// An array of named values.
class NamedValues : public ValueAbstractValueCollection
{
public:
    bool IsNull() const override { return false; }
    void SetNull() override { RemoveAll(); }
    unsigned int GetCount() const override { return static_cast<unsigned int>(m_vValues.size()); }
    void RemoveAll() override { m_vValues.clear(); }
    void Add(Value const & oValue) override
    {
        m_vValues.emplace_back(static_cast<NamedValue *>(oValue.GetCopy()));
    }
    bool Contains(Value const &) const override { return false; }
    AbstractConstIterator<Value> * GetConstIterator() const override { return new Iterator(m_vValues); }

private:
    using Values = std::vector<std::unique_ptr<NamedValue>>;

    class Iterator : public AbstractConstIterator<Value>
    {
    public:
        explicit Iterator(Values const & vValues) : m_vValues(vValues) {}
        void Begin() override { m_ix = 0; }
        void End() override { m_ix = m_vValues.size(); }
        void Next() override { ++m_ix; }
        bool IsEnd() const override { return m_ix >= m_vValues.size(); }
        Value const & GetValue() const override { return *m_vValues[m_ix]; }

    private:
        Values const & m_vValues;
        std::size_t m_ix = 0;
    };

    Values m_vValues;
};

std::function<void()> CollectValues(int n)
{
    return [n]
    {
        NamedValues oValues;
        for (int i = 0; i < n; ++i)
            oValues.Add(NamedValue("a name", ValueInt32(i)));
        ValueString sText("");
        oValues.AddAsString(sText);
        growth::Require(sText.GetLength() > static_cast<unsigned int>(n));
    };
}

} // namespace

std::vector<growth::Work> growth::GetValueWorks()
{
    return {
        {"text of n words appended", Order::eLinear, 5000, &AppendText},
        {"n words of a text replaced", Order::eLinear, 5000, &ReplaceText},
        {"n objects in the registry", Order::eLinearLog, 200, &RegisterObjects},
        {"collection of n named values, and its text", Order::eLinear, 200, &CollectValues},
    };
}
