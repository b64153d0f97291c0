#pragma once

#include <tessel/Exception.h>
#include <tessel/ValueString.h>

#include <gtest/gtest.h>

#include <string>

namespace tsltest
{

/// Whether the call ends in an assertion failure with that expression and information.
template<class Call>
testing::AssertionResult Asserts(std::string const & sExpression, std::string const & sInfo, Call && fCall)
{
    try
    {
        fCall();
    }
    catch (tsl::Exception const & oException)
    {
        std::string const sExpected =
            "XAssertion. Expression \"" + sExpression + "\" failed. \nInfo: \"" + sInfo + '"';
        if (oException.GetText() == sExpected && oException.GetResult().GetErrorCode() == 6)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "it says: " << oException.GetText();
    }
    return testing::AssertionFailure() << "no assertion failed";
}

} // namespace tsltest
