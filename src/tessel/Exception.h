#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

/// What the library throws where a failure cannot be returned: a holder of a Result. It has no base, so
/// it is caught as Exception alone.
class TSL_EXPORT Exception
{
public:
    /// With a Result of that code and text, category 0, and that source place.
    Exception(int iErrorCode, char const * sText, char const * sFile, int iLine);

    /// With a copy of the Result.
    explicit Exception(Result const & oResult);
    Exception(Exception const & oSource);
    Exception & operator=(Exception const & oSource);
    virtual ~Exception();

    /// The Result's text; empty for a success and for a failure without one. Holds until a change.
    virtual char const * GetText() const;

    Result const & GetResult() const;

    /// Throws an Exception made from the Result, whose source place the caller has set.
    [[noreturn]] static void Throw(Result const & oResult);

private:
    std::unique_ptr<Result> m_pResult;
};

} // namespace tsl
