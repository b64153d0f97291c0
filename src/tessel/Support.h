#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <vector>

namespace tsl
{

class GlobalMessageDispatcher;
class IniFile;
class Message;

/// Short calls for common needs: to report over the global bus, to read the program's ini file, to split a text.
///
///     tsl::Support::DispatchMessage(oResult);
///     int iLimit = 0;
///     if (!tsl::Support::GetAppIni().GetInt32("Server", "Limit", iLimit))
///         iLimit = 10;
///
/// Any thread may call them, also in the child of a fork (see CriticalSectionMutex).
class TSL_EXPORT Support
{
public:
    Support() = delete;

    /// The global bus. It must not be used once the library is being unloaded.
    static GlobalMessageDispatcher & GetAppDisp();

    /// Sends a message over the global bus, a Result as a ResultMessage, also if it is a success. Returns what the
    /// processors have reported. Does nothing and returns success while there is no bus: while the library begins
    /// to load and after the bus was closed.
    static Result DispatchMessage(Message const & oMessage);
    static Result DispatchMessage(Result const & oResult);

    /// The same; the headers of some systems define DispatchMessage as a macro for this name.
    static Result DispatchMessageA(Message const & oMessage);
    static Result DispatchMessageA(Result const & oResult);

    /// Sends a DebugMessage of the calling thread over the global bus. A trace statement is usually written with
    /// Trace.
    static Result DispatchDebugMessage(
        char const * sIdentifier, String const & sText, char const * sFile, int iLine);

    /// Looks up the level of a log point and writes it to *pLevel as well. The level is the number that the chapter
    /// "Debug/Switch" of the program's ini file has for the identifier, if "Enable" in the chapter "Debug" is 1 or
    /// more. Otherwise, and while the library is being unloaded, it is 0. A null pLevel is an assertion failure.
    static int RegisterLogPoint(int * pLevel, char const * sIdentifier, char const * sFile, int iLine);

    /// The program's ini file, which was read when the library was loaded. It is always open, and empty if there
    /// was no file or a bad one. It must not be used after the library was unloaded.
    static IniFile const & GetAppIni();

    /// The name of that file, which is in the current directory: the program's name and ".ini". Throws an Exception
    /// of code 10 if the system does not tell the program's name.
    static String GetAppIniFileName();

    /// How a text is split; flags that can be combined.
    enum
    {
        eSplitTrimLeft = 1,
        eSplitTrimRight = 2,
        eSplitSkipEmpty = 8,    ///< empty parts are omitted
        eSplitQuotes = 16,      ///< double quotes protect what they enclose
        eSplitRemoveEscape = 32 ///< the escape character in front of a separator is removed
    };

    /// Splits the text at each separator that has no escape character directly in front of it. Replaces vParts and
    /// returns the number of parts. With eSplitQuotes, a text in double quotes is one part, without changes; a
    /// quote that is not closed extends to the end.
    static unsigned int StringSplitter(
        String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape);

protected:
    /// The same without quotes. It appends to vParts and returns their number, 0 for an empty text.
    static int Split(
        String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape);
};

} // namespace tsl
