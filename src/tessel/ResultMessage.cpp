#include <tessel/ResultMessage.h>

#include "ResultHistoryText.h"

#include <tessel/Assertion.h>

namespace tsl
{

ResultMessage::ResultMessage(Result const & oResult) : m_oResult(oResult) {}

template<>
constexpr ClassSource CLASS_SOURCE<ResultMessage>{};
template ClassDescription const & Described<ResultMessage, Message>::GetStaticClassDesc();

void ResultMessage::SetResult(Result const & oResult)
{
    m_oResult = oResult;
}

ResultMessage * ResultMessage::GetClone() const
{
    return static_cast<ResultMessage *>(GetCopy());
}

String & ResultMessage::AddAsString(String & s) const
{
    return AppendResultHistory(m_oResult, s, EHistoryText::eAccumulated);
}

std::unique_ptr<AbstractNamedValueConstIterator<Value>> ResultMessage::GetConstIterator() const
{
    return std::make_unique<ResultMessageConstIterator>(*this);
}

void ResultMessage::DoCopy(Root const & oSource)
{
    m_oResult = static_cast<ResultMessage const &>(oSource).m_oResult;
}

ResultMessageConstIterator::ResultMessageConstIterator(ResultMessage const & oMessage)
    : MessageConstIterator(1), m_oMessage(oMessage)
{
}

Value const & ResultMessageConstIterator::GetValue() const
{
    if (IsEnd())
        XAssertionFailed("false", "ResultMessageConstIterator::GetValue(): Zugriff auf ungültiges Element.");
    return m_oMessage.GetResult();
}

char const * ResultMessageConstIterator::GetName() const
{
    if (IsEnd())
        XAssertionFailed("false", "ResultMessageConstIterator::GetName(): Zugriff auf ungültiges Element.");
    return "Result";
}

} // namespace tsl
