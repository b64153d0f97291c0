#include <tessel/ResultConstIterator.h>

namespace tsl
{

std::unique_ptr<AbstractNamedValueConstIterator<Value>> Result::GetConstIterator() const
{
    return std::make_unique<ResultConstIterator>(*this);
}

ResultConstIterator::ResultConstIterator(Result const & oResult)
    : NamedValueIterator(GetRows().size()),
      m_iErrorCode(oResult.GetErrorCode()),
      m_sText(oResult.GetText()),
      m_iCategory(oResult.GetCategory()),
      m_iSourceLine(oResult.GetSourceLine()),
      m_sSourceFile(oResult.GetSourceFile()),
      m_sCause(oResult.GetCause())
{
}

// Out of line, so that the vtable and the type_info of the class are in the library only.
ResultConstIterator::~ResultConstIterator() = default;

std::span<NamedGetter<ResultConstIterator> const> ResultConstIterator::GetRows()
{
    static constexpr NamedGetter<ResultConstIterator> aRows[] = {
        {"ErrCode", GetMember<&ResultConstIterator::m_iErrorCode>},
        {"Text", GetMember<&ResultConstIterator::m_sText>},
        {"Category", GetMember<&ResultConstIterator::m_iCategory>},
        {"SourceLine", GetMember<&ResultConstIterator::m_iSourceLine>},
        {"SourceFile", GetMember<&ResultConstIterator::m_sSourceFile>},
        {"Cause", GetMember<&ResultConstIterator::m_sCause>},
    };
    return aRows;
}

} // namespace tsl
