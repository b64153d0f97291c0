#include <tessel/ResultMessage.h>

#include "ResultHistoryText.h"

namespace tsl
{

ResultMessage::ResultMessage(Result const & oResult) : m_oResult(oResult) {}

template<>
constexpr ClassSource CLASS_SOURCE<ResultMessage>{};
template<>
ClassDescription const & Described<ResultMessage, Message>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

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
    : NamedValueIterator(GetRows().size()), m_oMessage(oMessage)
{
}

// Out of line, so that the vtable and the type record of the class are only in the library.
ResultMessageConstIterator::~ResultMessageConstIterator() = default;

std::span<NamedGetter<ResultMessageConstIterator> const> ResultMessageConstIterator::GetRows()
{
    static constexpr NamedGetter<ResultMessageConstIterator> aRows[] = {
        {"Result",
            [](ResultMessageConstIterator const & o) -> Value const & { return o.m_oMessage.GetResult(); }},
    };
    return aRows;
}

} // namespace tsl
