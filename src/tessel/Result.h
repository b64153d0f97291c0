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

/// The outcome of an operation: a success, or a failure with a code, a text, a category, a source place, a
/// cause and a history of the failures that led to it.
///
///     Result const oResult = oFile.Open("settings.ini");
///     if (oResult.IsError())
///         return MakeResult(ERR::eNotFound, "There are no settings.", oResult);
///
/// GetTextWithCauses is what a program prints of a failure.
///
/// Only an empty Result is a success: one that is made with code 0 is a failure, and each Set... makes a
/// failure of a success. A success allocates nothing. As a Value, a success is null.
///
/// Copies are independent of each other, but share the immutable entries of their histories: copying and
/// wrapping a failure takes the same time whatever the length of its history, and getting an entry takes
/// O(log n). One thread at a time uses an object; copies may be used by different threads.
class TSL_EXPORT Result : public Described<Result, Value>
{
public:
    /// Any other number may be used as well.
    enum Category : int
    {
        eCategoryDefault = 0,
        eCategoryIo = 1,   ///< reading a file failed
        eCategoryFault = 2 ///< failed assertions and wrong configuration
    };

    /// A success.
    Result() noexcept = default;

    /// A failure, whatever the code.
    Result(int iErrorCode, char const * sText, Category eCategory);
    Result(int iErrorCode, String const & sText, Category eCategory);
    Result(int iErrorCode, ValueString const & sText, Category eCategory);

    /// A failure with the category of oPrevious, which becomes its history as by SetPrevious.
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

    /// Replaces all fields. Assigning a failure with a history to a failure appends that history to the own
    /// one; without a history on the right, the own one is cleared.
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

    /// A shared success.
    static Result const & Null();

    /// Whether it is a success, or a failure.
    virtual bool IsOk() const { return m == nullptr; }
    virtual bool IsError() const { return m != nullptr; }

    /// Makes this object a success.
    virtual void Clear();

    /// An iterator over copies of the six fields: "ErrCode", "Text", "Category", "SourceLine", "SourceFile",
    /// "Cause". It does not refer to this object. Call Begin first.
    virtual std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const;

    /// The fields; the value for a success is in brackets. Pointers and references are valid until the next
    /// change.
    int GetErrorCode() const;             ///< [0]
    Category GetCategory() const;         ///< [eCategoryDefault]
    int GetSourceLine() const;            ///< [0]
    char const * GetSourceFile() const;   ///< [""]
    ValueString const & GetText() const;  ///< [null]
    ValueString const & GetCause() const; ///< [null] a second text

    /// Copy the text. A null pointer counts as "".
    void SetText(ValueString const & sText);
    void SetText(char const * sText);
    void SetCause(ValueString const & sCause);
    void SetCause(char const * sCause);

    /// Sets the source place of the failure. The file name is copied.
    void SetSource(char const * sFile, int iLine);

    /// The number of entries.
    int GetHistorySize() const;

    /// An entry of the history; entry 0 is the most recent failure. It has no history itself and is valid
    /// until the history changes. An index outside of the history is an assertion failure.
    Result const & GetHistory(int ix) const;

    /// Replaces the history by oResult followed by its history. If oResult is a success, nothing changes. If
    /// this object is a success, it becomes a copy of oResult.
    void SetPrevious(Result const & oResult);

    /// Assigns oResult to this object, as operator= does, and appends the former state and history of this
    /// object to the history. If oResult is a success, nothing changes. If this object is a success, it
    /// becomes a copy of oResult. Returns this object.
    Result const & InsertFront(Result const & oResult);

    /// A copy whose history is empty.
    [[nodiscard]] Result GetWithoutHistory() const;

    /// What a program prints of a failure: its text, and on lines of their own the texts of its history, the most
    /// recent first. The source place follows each text. A failure without a text has that of its code. "" for a
    /// success.
    ///
    /// ```
    /// There are no settings. [src/main.cpp:31]
    ///     Error while opening file 'settings.ini'. [src/tessel/IniFile.cpp:118]
    ///     No such file or directory
    /// ```
    [[nodiscard]] String GetTextWithCauses() const;

    /// Failures are equal if all fields and all entries of their histories are.
    bool operator==(Result const & oOther) const;
    bool operator!=(Result const & oOther) const { return !(*this == oOther); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

    /// The same as the assignment.
    void CopyFromResult(Result const & oSource);

    /// Copies all fields except for the history, which stays as it is.
    void CopyFromResultWithoutHistory(Result const & oSource);

private:
    struct Private;

    // Null in a success.
    Private * m = nullptr;
};

template<>
TSL_EXPORT ClassDescription const & Described<Result, Value>::GetStaticClassDesc();

/// Make a failure with the source place of the call, and with category 0, with eCategory, or with oPrevious
/// as by Result::SetPrevious and with its category. A null text counts as "".
inline Result MakeResult(int iErrorCode, char const * sText, Result::Category eCategory,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE())
{
    // Inline (R03): the compiler computes the lengths of literals.
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
