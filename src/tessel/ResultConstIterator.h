#pragma once

#include <tessel/Export.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/Result.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <span>

namespace tsl
{

/// A walk over the fields of a Result as they were when it was made. Access outside the elements is an
/// assertion failure.
class TSL_EXPORT ResultConstIterator : public NamedValueIterator<ResultConstIterator>
{
public:
    explicit ResultConstIterator(Result const & oResult);
    ~ResultConstIterator() override;

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
