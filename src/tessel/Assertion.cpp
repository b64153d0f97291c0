#include <tessel/Assertion.h>

#include "AssertionCause.h"

#include <tessel/ErrorCodes.h>
#include <tessel/Exception.h>
#include <tessel/String.h>
#include <tessel/Support.h>

#include <exception>

namespace tsl
{

namespace
{

// Whether this thread is reporting an assertion.
thread_local bool g_bReporting = false;

class ReportingScope
{
public:
    ReportingScope() { g_bReporting = true; }
    ~ReportingScope() { g_bReporting = false; }
    ReportingScope(ReportingScope const &) = delete;
    ReportingScope & operator=(ReportingScope const &) = delete;
};

String MakeHead(char const * sExpression)
{
    return String("XAssertion. Expression \"") + sExpression + "\" failed. ";
}

[[noreturn]] void ReportAndThrow(Result const & oFailure)
{
    // A processor that fails an assertion while it handles this report must not get a report of that one: it would
    // fail again, without end.
    if (!g_bReporting)
    {
        ReportingScope const oScope;
        // The caller must see this failure, whatever the processors do with the report.
        try
        {
            static_cast<void>(Support::DispatchMessage(oFailure));
        }
        catch (...)
        {
            // The cancellation of a thread unwinds the stack too. It is no exception, and must not be swallowed.
            if (!std::current_exception())
                throw;
        }
    }
    throw Exception(oFailure);
}

} // namespace

void XAssertionFailed(char const * sExpression, char const * sInfo, char const * sFile, int iLine)
{
    XAssertionFailedBy(sExpression, sInfo, Result(), sFile, iLine);
}

void XAssertionFailed(char const * sExpression, String const & sInfo, char const * sFile, int iLine)
{
    XAssertionFailed(sExpression, sInfo.c_str(), sFile, iLine);
}

void XAssertionFailed(char const * sExpression, Result const & oCause, char const * sFile, int iLine)
{
    Result oFailure(ERR::eInternal, MakeHead(sExpression), Result::eCategoryFault);
    oFailure.SetSource(sFile, iLine);
    oFailure.SetPrevious(oCause);
    ReportAndThrow(oFailure);
}

void XAssertionFailedBy(
    char const * sExpression, String const & sInfo, Result const & oCause, char const * sFile, int iLine)
{
    String const sText = MakeHead(sExpression) + "\nInfo: \"" + sInfo + '"';
    Result oFailure(ERR::eInternal, sText, Result::eCategoryFault);
    oFailure.SetSource(sFile, iLine);
    oFailure.SetPrevious(oCause);
    ReportAndThrow(oFailure);
}

} // namespace tsl
