#pragma once

// What nearly every test includes.

#include "OpenThread.h"
#include "ProcessTest.h"
#include "TestMessages.h"

#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <fstream>
#include <future>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <pthread.h>

namespace tsltest
{

/// The cases of a test: one row a line, each of which begins with what tells it from the others.
template<class... Columns>
using Rows = std::tuple<Columns...> const[];

inline testing::AssertionResult Contains(std::string const & sText, std::string const & sPart)
{
    if (sText.find(sPart) != std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "'" << sPart << "' is missing in: " << sText;
}

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

/// Whether each of the calls ends so.
inline testing::AssertionResult AllAssert(std::string const & sExpression, std::string const & sInfo,
    std::vector<std::function<void()>> const & vCalls)
{
    for (std::size_t i = 0; i < vCalls.size(); ++i)
        if (auto const oResult = Asserts(sExpression, sInfo, vCalls[i]); !oResult)
            return testing::AssertionFailure() << "call " << i << ": " << oResult.message();
    return testing::AssertionSuccess();
}

/// Looks again and again until it is true; false if that takes too long.
template<class Condition>
bool WaitUntil(Condition && fCondition)
{
    auto const oLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!fCondition())
    {
        if (std::chrono::steady_clock::now() > oLimit)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// While it lives, no thread can be started: none gets a stack.
class NoMoreThreads
{
public:
    NoMoreThreads()
    {
        ::pthread_getattr_default_np(&m_oFormer);
        pthread_attr_t oHuge = m_oFormer;
        ::pthread_attr_setstacksize(&oHuge, std::size_t{1} << 50);
        ::pthread_setattr_default_np(&oHuge);
    }
    ~NoMoreThreads() { ::pthread_setattr_default_np(&m_oFormer); }

private:
    pthread_attr_t m_oFormer;
};

/// -1, 0 or 1 as the six operators have it; 9 if they do not agree.
template<class Left, class Right>
int GetOrder(Left const & oLeft, Right const & oRight)
{
    int const iOrder = (oLeft > oRight) - (oLeft < oRight);
    bool const bAgree = (oLeft == oRight) == (iOrder == 0) && (oLeft != oRight) == (iOrder != 0)
                        && (oLeft <= oRight) == (iOrder <= 0) && (oLeft >= oRight) == (iOrder >= 0);
    return bAgree ? iOrder : 9;
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
