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

/// Reports a Result over the bus. The log writes it with its history:
///
///     tsl::Support::DispatchMessage(oResult);                     // the short form
///     tsl::Support::DispatchMessage(tsl::ResultMessage(oResult)); // the same
///
/// One thread fills a message in; after that any number may read it.
class TSL_EXPORT ResultMessage : public Described<ResultMessage, Message>
{
public:
    /// Holds a success.
    ResultMessage() = default;
    explicit ResultMessage(Result const & oResult);
    ResultMessage(ResultMessage const & oSource) = default;
    ResultMessage & operator=(ResultMessage const & oSource) = default;

    ~ResultMessage() override = default;

    /// Takes a copy.
    void SetResult(Result const & oResult);
    Result const & GetResult() const { return m_oResult; }

    /// A copy; the caller deletes it.
    ResultMessage * GetClone() const;

    /// Appends the history, oldest failure first, and then the Result itself. Each is on a line that begins with
    /// "History" and its distance; the text of each line begins with the texts of all lines before it.
    String & AddAsString(String & s) const override;

protected:
    /// The only element is "Result".
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    void DoCopy(Root const & oSource) override;

private:
    Result m_oResult;
};

template<>
TSL_EXPORT ClassDescription const & Described<ResultMessage, Message>::GetStaticClassDesc();

/// Iterates over the one element of a ResultMessage, which must outlive the iterator. It is used by one thread at a
/// time. Access outside the element is an assertion failure.
class TSL_EXPORT ResultMessageConstIterator : public NamedValueIterator<ResultMessageConstIterator>
{
public:
    /// Is at the end.
    explicit ResultMessageConstIterator(ResultMessage const & oMessage);
    ~ResultMessageConstIterator() override;

    /// Name and getter of the element.
    static std::span<NamedGetter<ResultMessageConstIterator> const> GetRows();

private:
    ResultMessage const & m_oMessage;
};

} // namespace tsl
