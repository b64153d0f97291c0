#pragma once

#include "Job.h"

#include <cstddef>
#include <string>

/// How the screen looks: nothing but plain lines where it is no terminal.
struct Style
{
    /// For the standard output; no colours if NO_COLOR is set.
    static Style Find();

    bool bTerminal = false;
    bool bColours = false;

    /// The text in the colour of the state.
    std::string Paint(JobState eState, std::string const & sText) const;

    /// To be written after what jobs have written, which may have changed the colours.
    std::string GetReset() const;
};

/// The text as a part of one line of a terminal: without control characters, and of so many characters at most.
std::string MakeShort(std::string const & sText, std::size_t iWidth);

/// Such as "0.310 s".
std::string FormatDuration(long iDuration);
