#include <tessel/Result.h>

#include "FailureText.h"
#include "LastingObject.h"
#include "ResultHistory.h"

#include <tessel/Assertion.h>
#include <tessel/ResultConverter.h>
#include <tessel/ValueString.h>

#include <memory>
#include <string_view>
#include <utility>

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

bool IsSameHistory(ResultHistory const & oLeft, ResultHistory const & oRight)
{
    int const iCount = oLeft.GetSize();
    if (iCount != oRight.GetSize())
        return false;
    for (int ix = 0; ix < iCount; ++ix)
        if (oLeft.Get(ix) != oRight.Get(ix))
            return false;
    return true;
}

/// The history that begins with oResult and continues with oHistory.
ResultHistory MakeHistory(Result const & oResult, ResultHistory oHistory)
{
    oHistory.AddInFront(oResult.GetWithoutHistory());
    return oHistory;
}

String GetTextWithPlace(Result const & oResult)
{
    ValueString const & sGiven = oResult.GetText();
    String sText = sGiven.IsNull() ? String() : String(sGiven.s_str());
    sText.TrimRight();
    if (sText.IsEmpty())
        sText = ERR::GetErrorText(oResult.GetErrorCode());
    if (*oResult.GetSourceFile() != '\0')
        sText << " [" << oResult.GetSourceFile() << ':' << oResult.GetSourceLine() << ']';
    return sText;
}

void AppendIndented(String & s, String const & sText)
{
    s << "\n    ";
    for (char const c : sText.s_str())
        if (c == '\n')
            s << "\n    ";
        else
            s << c;
}

} // namespace

struct TSL_HIDDEN Result::Private
{
    Private() = default;

    Private(int iErrorCode_, ValueString const & sText, Category eCategory_)
        : iErrorCode(iErrorCode_), eCategory(eCategory_), oText(sText)
    {
    }

    Private(int iErrorCode_, std::string_view sText, Category eCategory_, std::string_view sFile, int iLine)
        : iErrorCode(iErrorCode_), eCategory(eCategory_), iSourceLine(iLine), oSourceFile(sFile), oText(sText)
    {
    }

    /// The private record of the result, created if there is none.
    static Private & GetOrCreate(Result & oResult)
    {
        if (!oResult.m)
            oResult.m = new Private;
        return *oResult.m;
    }

    void CopyFields(Private const & oSource);
    bool operator==(Private const & oOther) const;

    int iErrorCode = 0;
    Category eCategory = eCategoryDefault;
    int iSourceLine = 0;
    ShortText oSourceFile;
    FailureText oText;

    // Null if there is no cause: few failures have one.
    std::unique_ptr<ValueString> pCause;

    ResultHistory oHistory;
};

void Result::Private::CopyFields(Private const & oSource)
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

bool Result::Private::operator==(Private const & oOther) const
{
    return iErrorCode == oOther.iErrorCode && oText == oOther.oText && eCategory == oOther.eCategory
           && iSourceLine == oOther.iSourceLine && oSourceFile.Get() == oOther.oSourceFile.Get()
           && IsSameText(OrNull(pCause), OrNull(oOther.pCause)) && IsSameHistory(oHistory, oOther.oHistory);
}

Result::Result(int iErrorCode, char const * sText, Category eCategory)
    : m(new Private(iErrorCode, sText, eCategory))
{
}

Result::Result(int iErrorCode, String const & sText, Category eCategory)
    : m(new Private(iErrorCode, sText, eCategory))
{
}

Result::Result(int iErrorCode, ValueString const & sText, Category eCategory)
    : m(new Private(iErrorCode, sText, eCategory))
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
    : m(new Private(iErrorCode, sText, eCategory, sFile, iLine))
{
}

Result & Result::operator=(Result const & oSource)
{
    CopyFromResult(oSource);
    return *this;
}

Result & Result::operator=(Result && oSource)
{
    // A failure that is assigned to a failure adds to its history, so nothing can be moved.
    if (m || &oSource == this)
        CopyFromResult(oSource);
    else
        m = std::exchange(oSource.m, nullptr);
    return *this;
}

template<>
constexpr ClassSource CLASS_SOURCE<Result>{};
template<>
ClassDescription const & Described<Result, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverter const & Result::GetConverter() const
{
    return LastingObject<ResultConverter>();
}

Result const & Result::Null()
{
    return LastingObject<Result>();
}

void Result::Clear()
{
    delete std::exchange(m, nullptr);
}

int Result::GetErrorCode() const
{
    return m ? m->iErrorCode : 0;
}
Result::Category Result::GetCategory() const
{
    return m ? m->eCategory : eCategoryDefault;
}
int Result::GetSourceLine() const
{
    return m ? m->iSourceLine : 0;
}
char const * Result::GetSourceFile() const
{
    return m ? m->oSourceFile.c_str() : "";
}
ValueString const & Result::GetText() const
{
    return m ? m->oText.GetValue() : ValueString::Null();
}
ValueString const & Result::GetCause() const
{
    return m ? OrNull(m->pCause) : ValueString::Null();
}

void Result::SetText(ValueString const & sText)
{
    Private::GetOrCreate(*this).oText.Set(sText);
}
void Result::SetText(char const * sText)
{
    Private::GetOrCreate(*this).oText.Set(OrEmpty(sText));
}
void Result::SetCause(ValueString const & sCause)
{
    Private::GetOrCreate(*this).pCause = std::make_unique<ValueString>(sCause);
}
void Result::SetCause(char const * sCause)
{
    SetCause(ValueString(sCause));
}

void Result::SetSource(char const * sFile, int iLine)
{
    Private & oBody = Private::GetOrCreate(*this);
    oBody.oSourceFile.Set(OrEmpty(sFile));
    oBody.iSourceLine = iLine;
}

int Result::GetHistorySize() const
{
    return m ? m->oHistory.GetSize() : 0;
}

Result const & Result::GetHistory(int ix) const
{
    if (ix < 0 || ix >= GetHistorySize())
        XAssertionFailed("ix>=0 && ix<GetHistorySize()", "Index out of range.");
    return m->oHistory.Get(ix);
}

void Result::SetPrevious(Result const & oResult)
{
    if (oResult.IsOk())
        return;
    if (!m)
    {
        CopyFromResult(oResult);
        return;
    }

    m->oHistory = MakeHistory(oResult, oResult.m->oHistory);
}

Result const & Result::InsertFront(Result const & oResult)
{
    if (oResult.IsOk())
        return *this;
    if (!m)
    {
        CopyFromResult(oResult);
        return *this;
    }

    ResultHistory const oFormer = MakeHistory(*this, m->oHistory);
    CopyFromResult(oResult);
    m->oHistory.Append(oFormer);
    return *this;
}

Result Result::GetWithoutHistory() const
{
    Result oCopy;
    oCopy.CopyFromResultWithoutHistory(*this);
    return oCopy;
}

String Result::GetTextWithCauses() const
{
    if (!m)
        return String();

    String sText = GetTextWithPlace(*this);
    for (int ix = 0; ix < GetHistorySize(); ++ix)
        AppendIndented(sText, GetTextWithPlace(GetHistory(ix)));
    return sText;
}

bool Result::operator==(Result const & oOther) const
{
    if (!m || !oOther.m)
        return m == oOther.m;
    return *m == *oOther.m;
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
    if (!oSource.m)
    {
        Result::Clear();
        return;
    }

    // A new record is stored only when it is complete: if the copy constructor throws, no destructor deletes
    // m.
    std::unique_ptr<Private> pNew(m ? nullptr : new Private);
    Private & oBody = pNew ? *pNew : *m;
    oBody.CopyFields(*oSource.m);

    // Last, since the source may be an entry of the own history, which this may delete.
    if (oSource.GetHistorySize() > 0)
        oBody.oHistory.Append(oSource.m->oHistory);
    else
        oBody.oHistory = ResultHistory();
    if (pNew)
        m = pNew.release();
}

void Result::CopyFromResultWithoutHistory(Result const & oSource)
{
    if (&oSource == this)
        return;

    if (oSource.m)
        Private::GetOrCreate(*this).CopyFields(*oSource.m);
    else
        Result::Clear();
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
