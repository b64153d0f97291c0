#pragma once

#include <tessel/Tessel.h>

#include <iostream>
#include <string>
#include <utility>

/// The base of the examples: prints each failure with its causes, and ends with the code of the failure. The library
/// itself prints nothing, and a failure of Run is not the exit code.
class ReportingProgram : public tsl::ConsoleApplication
{
public:
    ~ReportingProgram() override { GetDispatcher().Unregister(m_oPrinter); }

    /// Runs the program and returns its exit code.
    static int Start(char const * sName, tsl::Application * (*pCreate)(), int iCount, char ** ppArguments)
    {
        try
        {
            // Without the program's own name: if it begins with a slash, it would be an option.
            return Instance(pCreate).Main(iCount - 1, ppArguments + 1);
        }
        catch (tsl::Exception const & oException)
        {
            // For instance a failed assertion. The log file has it already.
            Print(sName, oException.GetResult());
            return oException.GetResult().GetErrorCode();
        }
    }

protected:
    ReportingProgram(char const * sName, tsl::ConsoleApplicationConfig * pConfig)
        : ConsoleApplication(pConfig), m_oPrinter(sName)
    {
        // Not in PreRun: a wrong command line is reported before it. A message class can always be registered.
        static_cast<void>(
            GetDispatcher().Register(m_oPrinter, {tsl::ResultMessage::GetStaticClassDesc().GetClassId()}));
    }

    /// The exit code is that of PostRun, so it returns the failure that was printed, and does not print it again.
    tsl::Result PostRun() override
    {
        tsl::Result const oResult = ConsoleApplication::PostRun();
        if (m_oPrinter.GetFailure().IsOk())
            return oResult;
        GetDispatcher().Unregister(m_oPrinter);
        return m_oPrinter.GetFailure();
    }

private:
    /// Prints failures, and keeps the last one.
    class FailurePrinter : public tsl::PlainProcessor
    {
    public:
        explicit FailurePrinter(std::string sName) : m_sName(std::move(sName)) {}

        void Process(tsl::Message const & oMessage, tsl::Result &) const override
        {
            auto const * const pFailure = dynamic_cast<tsl::ResultMessage const *>(&oMessage);
            if (!pFailure)
                return;
            m_oFailure = pFailure->GetResult();
            Print(m_sName, m_oFailure);
        }

        tsl::Result const & GetFailure() const { return m_oFailure; }

    private:
        std::string m_sName;
        mutable tsl::Result m_oFailure;
    };

    static void Print(std::string const & sName, tsl::Result const & oFailure)
    {
        std::cerr << sName << ": " << oFailure.GetTextWithCauses().c_str() << std::endl;
    }

    FailurePrinter m_oPrinter;
};
