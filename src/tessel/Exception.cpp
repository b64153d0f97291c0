#include <tessel/Exception.h>

#include <tessel/ValueString.h>

namespace tsl
{

Exception::Exception(int iErrorCode, char const * sText, char const * sFile, int iLine)
    : m_pResult(std::make_unique<Result>(iErrorCode, sText, Result::eCategoryDefault))
{
    m_pResult->SetSource(sFile, iLine);
}

Exception::Exception(Result const & oResult) : m_pResult(std::make_unique<Result>(oResult)) {}
Exception::Exception(Exception const & oSource) : m_pResult(std::make_unique<Result>(*oSource.m_pResult)) {}

Exception & Exception::operator=(Exception const & oSource)
{
    if (&oSource != this)
        *m_pResult = *oSource.m_pResult;
    return *this;
}

Exception::~Exception() = default;

char const * Exception::GetText() const
{
    ValueString const & sText = m_pResult->GetText();
    return sText.IsNull() ? "" : sText.c_str();
}

Result const & Exception::GetResult() const
{
    return *m_pResult;
}

void Exception::Throw(Result const & oResult)
{
    throw Exception(oResult);
}

} // namespace tsl
