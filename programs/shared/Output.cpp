#include "Output.h"

#include "System.h"

#include <tessel/OS.h>
#include <tessel/String.h>

void Output::Flush()
{
    WriteNow(m_sBuffer);
    m_sBuffer.clear();
}

bool Output::IsUnread() const
{
    return System::IsBrokenPipe(m_iError);
}

tsl::Result Output::Finish()
{
    Flush();
    if (m_iError == 0 || IsUnread())
        return tsl::Result();
    return tsl::MakeResult(
        tsl::ERR::eAccessDenied, "The output cannot be written", tsl::OS::FormatError(m_iError));
}

void Output::WriteLarge(std::string_view sText)
{
    Flush();
    if (sText.size() < SIZE)
        m_sBuffer = sText;
    else
        WriteNow(sText);
}

void Output::WriteNow(std::string_view sText)
{
    if (m_iError == 0)
        m_iError = System::WriteOutput(sText);
}
