#pragma once

#include <tessel/Export.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/Result.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <span>

namespace tsl
{

/// Iterates over the fields of a Result (see Result::GetConstIterator, which creates it).
///
///     ResultConstIterator oField(oResult);
///     for (oField.Begin(); !oField.IsEnd(); oField.Next())
///         std::cout << oField.GetName() << '\n';
///
/// It owns copies of the fields, so the Result may change or be destroyed. GetValue and GetName at the end
/// are assertion failures. One thread at a time uses an iterator.
class TSL_EXPORT ResultConstIterator : public NamedValueIterator<ResultConstIterator>
{
public:
    /// Is at the end.
    explicit ResultConstIterator(Result const & oResult);
    ~ResultConstIterator() override;

    /// The table of the fields, for NamedValueIterator.
    static std::span<NamedGetter<ResultConstIterator> const> GetRows();

private:
    ValueInt32 m_iErrorCode;
    ValueString m_sText;
    ValueInt32 m_iCategory;
    ValueInt32 m_iSourceLine;
    ValueString m_sSourceFile;
    ValueString m_sCause;
};

} // namespace tsl
