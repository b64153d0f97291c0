#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Message.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/Result.h>

#include <span>

namespace tsl
{

class ValueString;

/// A Result that somebody wants reported.
class TSL_EXPORT ResultMessage : public Described<ResultMessage, Message>
{
public:
    /// With a success.
    ResultMessage() = default;
    explicit ResultMessage(Result const & oResult);
    ResultMessage(ResultMessage const & oSource) = default;
    ResultMessage & operator=(ResultMessage const & oSource) = default;

    ~ResultMessage() override = default;

    void SetResult(Result const & oResult);
    Result const & GetResult() const { return m_oResult; }

    /// A copy; the caller deletes it.
    ResultMessage * GetClone() const;

    /// Appends the history from its far end on and then the Result itself, each on a line that begins with
    /// "History" and its distance. The text of every line begins with those of the lines before it.
    String & AddAsString(String & s) const override;

protected:
    /// "Result".
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    void DoCopy(Root const & oSource) override;

private:
    Result m_oResult;
};

extern template ClassDescription const & Described<ResultMessage, Message>::GetStaticClassDesc();

/// The walk over a ResultMessage, which must outlive it. Access outside the element is an assertion
/// failure.
class TSL_EXPORT ResultMessageConstIterator : public NamedValueIterator<ResultMessageConstIterator>
{
public:
    explicit ResultMessageConstIterator(ResultMessage const & oMessage);
    ~ResultMessageConstIterator() override;

    static std::span<NamedGetter<ResultMessageConstIterator> const> GetRows();

private:
    ResultMessage const & m_oMessage;
};

} // namespace tsl
