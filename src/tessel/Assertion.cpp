#include <tessel/Assertion.h>

#include <tessel/ErrorCodes.h>
#include <tessel/Exception.h>
#include <tessel/String.h>
#include <tessel/Support.h>

#include <exception>

namespace tsl
{

namespace
{

// Whether this thread is reporting an assertion at the moment.
thread_local bool g_bReporting = false;

/// Marks the thread as reporting until the end of the scope.
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
    // A processor that fails an assertion of its own while it takes this report must not be called
    // with the next one, and so on without end.
    if (!g_bReporting)
    {
        ReportingScope const oScope;
        // Whatever the processors make of the report, it is this failure that the caller has to see.
        try
        {
            static_cast<void>(Support::DispatchMessage(oFailure));
        }
        catch (...)
        {
            // The cancellation of the thread is no exception of the program: it must not be caught for good.
            if (!std::current_exception())
                throw;
        }
    }
    throw Exception(oFailure);
}

} // namespace

void XAssertionFailed(char const * sExpression, char const * sInfo, char const * sFile, int iLine)
{
    String const sText = MakeHead(sExpression) + "\nInfo: \"" + sInfo + '"';
    Result oFailure(ERR::eInternal, sText, Result::eCategoryFault);
    oFailure.SetSource(sFile, iLine);
    ReportAndThrow(oFailure);
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

} // namespace tsl
