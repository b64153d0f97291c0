#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

/// The exception that the library throws where a failure cannot be returned. It holds a Result.
///
///     try { DoWork(); }
///     catch (Exception const & oException)
///     {
///         std::cerr << oException.GetText() << '\n';
///     }
///
/// It has no base class: a handler for std::exception does not catch it. One thread at a time uses an object.
class TSL_EXPORT Exception
{
public:
    /// With a failure of this code, text and source place, and category 0. The texts are copied.
    Exception(int iErrorCode, char const * sText, char const * sFile, int iLine);

    /// With a copy of the Result.
    explicit Exception(Result const & oResult);
    Exception(Exception const & oSource);
    Exception & operator=(Exception const & oSource);
    virtual ~Exception();

    /// The text of the Result, "" if it has none. Valid until the object is changed or destroyed.
    virtual char const * GetText() const;

    /// The reference holds until the object is changed or destroyed.
    Result const & GetResult() const;

    /// Throws an Exception with a copy of the Result. The caller sets the source place of the Result.
    [[noreturn]] static void Throw(Result const & oResult);

private:
    std::unique_ptr<Result> m_pResult;
};

} // namespace tsl
