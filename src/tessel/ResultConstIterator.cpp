#include <tessel/ResultConstIterator.h>

#include <tessel/Assertion.h>

namespace tsl
{

static constexpr int ELEMENT_COUNT = 6;

std::unique_ptr<AbstractNamedValueConstIterator<Value>> Result::GetConstIterator() const
{
    return std::make_unique<ResultConstIterator>(*this);
}

ResultConstIterator::ResultConstIterator(Result const & oResult)
    : MessageConstIterator(ELEMENT_COUNT),
      m_iErrorCode(oResult.GetErrorCode()),
      m_sText(oResult.GetText()),
      m_iCategory(oResult.GetCategory()),
      m_iSourceLine(oResult.GetSourceLine()),
      m_sSourceFile(oResult.GetSourceFile()),
      m_sCause(oResult.GetCause())
{
}

Value const & ResultConstIterator::GetValue() const
{
    switch (GetPosition())
    {
    case 0:
        return m_iErrorCode;
    case 1:
        return m_sText;
    case 2:
        return m_iCategory;
    case 3:
        return m_iSourceLine;
    case 4:
        return m_sSourceFile;
    case 5:
        return m_sCause;
    default:
        XAssertionFailed("false", "ResultConstIterator::GetValue(): Zugriff auf ungültiges Element.");
    }
}

char const * ResultConstIterator::GetName() const
{
    static constexpr char const * aNames[ELEMENT_COUNT] = {
        "ErrCode", "Text", "Category", "SourceLine", "SourceFile", "Cause"};
    if (IsEnd())
        XAssertionFailed("false", "ResultConstIterator::GetName(): Zugriff auf ungültiges Element.");
    return aNames[GetPosition()];
}

} // namespace tsl
