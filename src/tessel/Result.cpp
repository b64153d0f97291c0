#include <tessel/Result.h>

#include "FailureText.h"

#include <tessel/Assertion.h>
#include <tessel/ResultConverter.h>
#include <tessel/ValueString.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace tsl
{

namespace
{

std::string_view OrEmpty(char const * sText)
{
    return sText ? sText : "";
}

bool IsSameText(ValueString const & sLeft, ValueString const & sRight)
{
    if (sLeft.IsNull() || sRight.IsNull())
        return sLeft.IsNull() && sRight.IsNull();
    return sLeft.Compare(sRight) == 0;
}

} // namespace

struct TSL_HIDDEN Result::Body
{
    Body() = default;

    Body(int iErrorCode_, ValueString const & sText, Category eCategory_)
        : iErrorCode(iErrorCode_), eCategory(eCategory_), oText(sText)
    {
    }

    Body(int iErrorCode_, std::string_view sText, Category eCategory_, std::string_view sFile, int iLine)
        : iErrorCode(iErrorCode_), eCategory(eCategory_), iSourceLine(iLine), oSourceFile(sFile), oText(sText)
    {
    }

    void CopyFields(Body const & oSource);
    bool operator==(Body const & oOther) const;

    int iErrorCode = 0;
    Category eCategory = eCategoryDefault;
    int iSourceLine = 0;
    ShortText oSourceFile;
    FailureText oText;

    // Null while the cause is, since hardly any failure has one.
    std::unique_ptr<ValueString> pCause;

    // Nearest failure first. The entries have no history.
    std::vector<std::unique_ptr<Result>> vHistory;
};

void Result::Body::CopyFields(Body const & oSource)
{
    iErrorCode = oSource.iErrorCode;
    eCategory = oSource.eCategory;
    iSourceLine = oSource.iSourceLine;
    oSourceFile.Set(oSource.oSourceFile.Get());
    oText = oSource.oText;
    pCause = oSource.pCause ? std::make_unique<ValueString>(*oSource.pCause) : nullptr;
}

static ValueString const & OrNull(std::unique_ptr<ValueString> const & pText)
{
    return pText ? *pText : ValueString::Null();
}

bool Result::Body::operator==(Body const & oOther) const
{
    return iErrorCode == oOther.iErrorCode && oText == oOther.oText && eCategory == oOther.eCategory
           && iSourceLine == oOther.iSourceLine && oSourceFile.Get() == oOther.oSourceFile.Get()
           && IsSameText(OrNull(pCause), OrNull(oOther.pCause))
           && std::equal(vHistory.begin(), vHistory.end(), oOther.vHistory.begin(), oOther.vHistory.end(),
               [](auto const & pLeft, auto const & pRight) { return *pLeft == *pRight; });
}

Result::Result(int iErrorCode, char const * sText, Category eCategory)
    : m_pBody(new Body(iErrorCode, sText, eCategory))
{
}

Result::Result(int iErrorCode, String const & sText, Category eCategory)
    : m_pBody(new Body(iErrorCode, sText, eCategory))
{
}

Result::Result(int iErrorCode, ValueString const & sText, Category eCategory)
    : m_pBody(new Body(iErrorCode, sText, eCategory))
{
}

Result::Result(int iErrorCode, char const * sText, Result const & oPrevious)
    : Result(iErrorCode, ValueString(sText), oPrevious)
{
}

Result::Result(int iErrorCode, String const & sText, Result const & oPrevious)
    : Result(iErrorCode, ValueString(sText), oPrevious)
{
}

Result::Result(int iErrorCode, ValueString const & sText, Result const & oPrevious)
    : Result(iErrorCode, sText, oPrevious.GetCategory())
{
    SetPrevious(oPrevious);
}

Result::Result(int iErrorCode, std::string_view sText, Category eCategory, std::string_view sFile, int iLine)
    : m_pBody(new Body(iErrorCode, sText, eCategory, sFile, iLine))
{
}

Result & Result::operator=(Result const & oSource)
{
    CopyFromResult(oSource);
    return *this;
}

Result & Result::operator=(Result && oSource)
{
    // Between two failures the histories accumulate, so there is nothing to steal.
    if (m_pBody || &oSource == this)
        CopyFromResult(oSource);
    else
        m_pBody = std::exchange(oSource.m_pBody, nullptr);
    return *this;
}

ClassDescription const & Result::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & Result::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<Result>(&Value::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * Result::CreateNew()
{
    return new Result;
}

ValueConverter const & Result::GetConverter() const
{
    static ResultConverter const & oConverter = *RegisterLastingObject(new ResultConverter);
    return oConverter;
}

Result const & Result::Null()
{
    static Result const & oNull = *RegisterLastingObject(new Result);
    return oNull;
}

void Result::Clear()
{
    FreeBody();
}

int Result::GetErrorCode() const
{
    return m_pBody ? m_pBody->iErrorCode : 0;
}
Result::Category Result::GetCategory() const
{
    return m_pBody ? m_pBody->eCategory : eCategoryDefault;
}
int Result::GetSourceLine() const
{
    return m_pBody ? m_pBody->iSourceLine : 0;
}
char const * Result::GetSourceFile() const
{
    return m_pBody ? m_pBody->oSourceFile.c_str() : "";
}
ValueString const & Result::GetText() const
{
    return m_pBody ? m_pBody->oText.GetValue() : ValueString::Null();
}
ValueString const & Result::GetCause() const
{
    return m_pBody ? OrNull(m_pBody->pCause) : ValueString::Null();
}

void Result::SetText(ValueString const & sText)
{
    DemandBody().oText.Set(sText);
}
void Result::SetText(char const * sText)
{
    DemandBody().oText.Set(OrEmpty(sText));
}
void Result::SetCause(ValueString const & sCause)
{
    DemandBody().pCause = std::make_unique<ValueString>(sCause);
}
void Result::SetCause(char const * sCause)
{
    SetCause(ValueString(sCause));
}

void Result::SetSource(char const * sFile, int iLine)
{
    Body & oBody = DemandBody();
    oBody.oSourceFile.Set(OrEmpty(sFile));
    oBody.iSourceLine = iLine;
}

int Result::GetHistorySize() const
{
    return m_pBody ? static_cast<int>(m_pBody->vHistory.size()) : 0;
}

Result const & Result::GetHistory(int ix) const
{
    if (ix < 0 || ix >= GetHistorySize())
        XAssertionFailed("ix>=0 && ix<GetHistorySize()", "Index out of range.");
    return *m_pBody->vHistory[static_cast<std::size_t>(ix)];
}

void Result::SetPrevious(Result const & oResult)
{
    if (oResult.IsOk())
        return;
    if (!m_pBody)
    {
        CopyFromResult(oResult);
        return;
    }

    // The argument may be an entry of the history that goes.
    Result const oPrevious(oResult);
    m_pBody->vHistory.clear();
    AddToHistory(oPrevious);
}

Result const & Result::InsertFront(Result const & oResult)
{
    if (oResult.IsOk())
        return *this;
    if (!m_pBody)
    {
        CopyFromResult(oResult);
        return *this;
    }

    // The argument may be this object or go away with the history, so it is not read any more afterwards.
    Result const oFormer(*this);
    CopyFromResult(oResult);
    AddToHistory(oFormer);
    return *this;
}

Result Result::GetWithoutHistory() const
{
    Result oCopy;
    oCopy.CopyFromResultWithoutHistory(*this);
    return oCopy;
}

bool Result::operator==(Result const & oOther) const
{
    if (!m_pBody || !oOther.m_pBody)
        return m_pBody == oOther.m_pBody;
    return *m_pBody == *oOther.m_pBody;
}

void Result::DoCopy(Root const & oSource)
{
    CopyFromResult(static_cast<Result const &>(oSource));
}

Value::eCompare Result::DoCompareTo(Value const & oOther) const
{
    return *this == static_cast<Result const &>(oOther) ? eEqual : eNotComparable;
}

void Result::CopyFromResult(Result const & oSource)
{
    if (&oSource == this)
        return;
    if (!oSource.m_pBody)
    {
        FreeBody();
        return;
    }

    // An entry of the own history would go away under the copy.
    std::vector<std::unique_ptr<Result>> vEntries;
    for (auto const & pEntry : oSource.m_pBody->vHistory)
        vEntries.push_back(std::make_unique<Result>(*pEntry));

    // A new body stands alone until it is whole: no destructor follows a copy constructor that throws.
    std::unique_ptr<Body> pNew(m_pBody ? nullptr : new Body);
    Body & oBody = pNew ? *pNew : *m_pBody;
    oBody.CopyFields(*oSource.m_pBody);
    if (vEntries.empty())
        oBody.vHistory.clear();
    std::move(vEntries.begin(), vEntries.end(), std::back_inserter(oBody.vHistory));
    if (pNew)
        m_pBody = pNew.release();
}

void Result::CopyFromResultWithoutHistory(Result const & oSource)
{
    if (&oSource == this)
        return;

    if (oSource.m_pBody)
        DemandBody().CopyFields(*oSource.m_pBody);
    else
        FreeBody();
}

Result::Body & Result::DemandBody()
{
    if (!m_pBody)
        m_pBody = new Body;
    return *m_pBody;
}

void Result::FreeBody() noexcept
{
    delete std::exchange(m_pBody, nullptr);
}

void Result::AddToHistory(Result const & oResult)
{
    if (oResult.IsOk())
        XAssertionFailed("!oResult.IsOk()", "Not allowed.");

    m_pBody->vHistory.push_back(std::make_unique<Result>(oResult.GetWithoutHistory()));
    for (int i = 0; i < oResult.GetHistorySize(); ++i)
        m_pBody->vHistory.push_back(std::make_unique<Result>(oResult.GetHistory(i)));
}

Result MakeResult(int iErrorCode, char const * sText, Result const & oPrevious, char const * sFile, int iLine)
{
    Result oResult = MakeResult(iErrorCode, sText, oPrevious.GetCategory(), sFile, iLine);
    oResult.SetPrevious(oPrevious);
    return oResult;
}

Result MakeResult(
    int iErrorCode, String const & sText, Result::Category eCategory, char const * sFile, int iLine)
{
    return Result(iErrorCode, sText.s_str(), eCategory, OrEmpty(sFile), iLine);
}

Result MakeResult(int iErrorCode, String const & sText, char const * sFile, int iLine)
{
    return MakeResult(iErrorCode, sText, Result::eCategoryDefault, sFile, iLine);
}

Result MakeResult(
    int iErrorCode, String const & sText, Result const & oPrevious, char const * sFile, int iLine)
{
    Result oResult = MakeResult(iErrorCode, sText, oPrevious.GetCategory(), sFile, iLine);
    oResult.SetPrevious(oPrevious);
    return oResult;
}

} // namespace tsl
