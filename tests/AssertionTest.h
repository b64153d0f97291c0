#pragma once

#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <string>

namespace tsltest
{

/// What a call throws; one with a success if it throws nothing.
template<class Call>
tsl::Exception Catch(Call && fCall)
{
    try
    {
        fCall();
    }
    catch (tsl::Exception const & oException)
    {
        return oException;
    }
    return tsl::Exception(tsl::Result());
}

/// Whether the call ends in an assertion failure with that expression and information.
template<class Call>
testing::AssertionResult Asserts(std::string const & sExpression, std::string const & sInfo, Call && fCall)
{
    tsl::Exception const oException = Catch(fCall);
    std::string const sExpected =
        "XAssertion. Expression \"" + sExpression + "\" failed. \nInfo: \"" + sInfo + '"';
    if (oException.GetText() == sExpected && oException.GetResult().GetErrorCode() == 6)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it says: " << oException.GetText();
}

inline std::string GetText(tsl::Value const & oValue, tsl::ValueConverterLayout const & oLayout)
{
    tsl::ValueString sText("");
    oValue.GetConverter().ConvertToText(oValue, sText, oLayout);
    return sText.s_str();
}

inline std::string GetText(tsl::Value const & oValue)
{
    return GetText(oValue, oValue.GetConverter().GetDefaultLayout());
}

} // namespace tsltest
