#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Described.h>
#include <tessel/ErrorCodes.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

#include <memory>
#include <string_view>

namespace tsl
{

class String;
class ValueString;

/// How an operation ended: a success, which holds nothing at all, or a failure with code, text, category,
/// source place, cause and a flat history of the failures that led to it.
///
/// Success and failure are told by the presence of the body and never by the code: a Result made with
/// code 0 is a failure, and each Set... turns a success into one. A success allocates nothing. To the
/// value family a success is a null value.
///
/// Copies are independent of each other. They share the entries of their histories, which never change and whose
/// owners are counted atomically: to copy or wrap a failure takes the same time whatever the length of its history,
/// and an entry is found in O(log n). An object is used by one thread at a time and may be handed to another, as may
/// its copies.
class TSL_EXPORT Result : public Described<Result, Value>
{
public:
    /// Any other number may be used as well.
    enum Category : int
    {
        eCategoryDefault = 0,
        eCategoryIo = 1,   ///< reading a file failed
        eCategoryFault = 2 ///< broken rules and bad configuration
    };

    /// A success.
    Result() noexcept = default;

    /// A failure, whatever the code.
    Result(int iErrorCode, char const * sText, Category eCategory);
    Result(int iErrorCode, String const & sText, Category eCategory);
    Result(int iErrorCode, ValueString const & sText, Category eCategory);

    /// A failure of the previous one's category with that in its history, as by SetPrevious.
    Result(int iErrorCode, char const * sText, Result const & oPrevious);
    Result(int iErrorCode, String const & sText, Result const & oPrevious);
    Result(int iErrorCode, ValueString const & sText, Result const & oPrevious);

    /// A failure with its source place; both texts are copied.
    Result(int iErrorCode, std::string_view sText, Category eCategory, std::string_view sFile, int iLine);

    Result(Result const & oSource) : Described(oSource)
    {
        if (oSource.m) [[unlikely]]
            CopyFromResult(oSource);
    }
    Result(Result && oSource) noexcept : Described(oSource), m(oSource.m) { oSource.m = nullptr; }

    /// Assigning a failure to a failure with a history appends the other's history to the own one; the
    /// rest is replaced. Without a history on the right there is none afterwards.
    Result & operator=(Result const & oSource);
    Result & operator=(Result && oSource);

    ~Result() override
    {
        if (m) [[unlikely]]
            Result::Clear();
    }

    bool IsNull() const override { return IsOk(); }
    void SetNull() override { Clear(); }
    ValueConverter const & GetConverter() const override;

    /// The shared success.
    static Result const & Null();

    virtual bool IsOk() const { return m == nullptr; }
    virtual bool IsError() const { return m != nullptr; }

    /// Makes a success of it.
    virtual void Clear();

    /// A walk over the six fields as they are now: "ErrCode", "Text", "Category", "SourceLine",
    /// "SourceFile", "Cause". It keeps no reference to this object; Begin has to be called first.
    virtual std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const;

    /// What a success answers stands in brackets.
    int GetErrorCode() const;             ///< [0]
    Category GetCategory() const;         ///< [eCategoryDefault]
    int GetSourceLine() const;            ///< [0]
    char const * GetSourceFile() const;   ///< [""]; holds until the next change
    ValueString const & GetText() const;  ///< [null]
    ValueString const & GetCause() const; ///< [null] a second text

    void SetText(ValueString const & sText);
    void SetText(char const * sText);
    void SetCause(ValueString const & sCause);
    void SetCause(char const * sCause);

    /// The place where the failure arose; the file name is copied.
    void SetSource(char const * sFile, int iLine);

    int GetHistorySize() const;

    /// Entry 0 is the nearest failure. An index outside the history is an assertion failure. The entry
    /// holds until the history changes, and has no history of its own.
    Result const & GetHistory(int ix) const;

    /// Replaces the history by the given failure and its history. A success as argument changes nothing;
    /// a success as receiver becomes a copy of the argument.
    void SetPrevious(Result const & oResult);

    /// Puts the given failure and its history in front; what this object was becomes the next entry of
    /// the history. A success as argument changes nothing; a success as receiver becomes a copy.
    Result const & InsertFront(Result const & oResult);

    [[nodiscard]] Result GetWithoutHistory() const;

    /// Two failures are equal if all fields and, entry by entry, the histories are.
    bool operator==(Result const & oOther) const;
    bool operator!=(Result const & oOther) const { return !(*this == oOther); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

    /// As the assignment.
    void CopyFromResult(Result const & oSource);

    /// Takes over all but the history; the own history stays.
    void CopyFromResultWithoutHistory(Result const & oSource);

private:
    struct Private;

    // Null in a success.
    Private * m = nullptr;
};

extern template ClassDescription const & Described<Result, Value>::GetStaticClassDesc();

/// Makes a failure that carries the place of the call: with category 0, with a category, or with a previous
/// failure. A null text counts as the empty one.
inline Result MakeResult(int iErrorCode, char const * sText, Result::Category eCategory,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE())
{
    // Here, since the lengths of literals are known where they stand.
    return Result(iErrorCode, std::string_view(sText ? sText : ""), eCategory,
        std::string_view(sFile ? sFile : ""), iLine);
}
inline Result MakeResult(
    int iErrorCode, char const * sText, char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE())
{
    return MakeResult(iErrorCode, sText, Result::eCategoryDefault, sFile, iLine);
}
TSL_EXPORT Result MakeResult(int iErrorCode, char const * sText, Result const & oPrevious,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());
TSL_EXPORT Result MakeResult(int iErrorCode, String const & sText, Result::Category eCategory,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());
TSL_EXPORT Result MakeResult(int iErrorCode, String const & sText, char const * sFile = __builtin_FILE(),
    int iLine = __builtin_LINE());
TSL_EXPORT Result MakeResult(int iErrorCode, String const & sText, Result const & oPrevious,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

} // namespace tsl
