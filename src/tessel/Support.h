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

/// The library's shared helpers: the short calls by which all code reports on the global bus and asks for
/// its configuration, and the splitting of texts. All are callable from any thread, also in a child that was
/// forked off a program with threads (see CriticalSectionMutex).
class TSL_EXPORT Support
{
public:
    Support() = delete;

    /// The application-wide bus. It must not be used any more once the library is being unloaded.
    static GlobalMessageDispatcher & GetAppDisp();

    /// Puts a message on the global bus; a Result travels as a ResultMessage, a success as well. Returns
    /// what the processors have left. While the library has no bus, at its very start and at its end,
    /// nothing happens and success is returned.
    static Result DispatchMessage(Message const & oMessage);
    static Result DispatchMessage(Result const & oResult);

    /// The same, under the name that the headers of some systems turn the other into.
    static Result DispatchMessageA(Message const & oMessage);
    static Result DispatchMessageA(Result const & oResult);

    /// Puts a DebugMessage with the calling thread and process on the global bus.
    static Result DispatchDebugMessage(
        char const * sIdentifier, String const & sText, char const * sFile, int iLine);

    /// Finds the level of a log point: what the chapter "Debug/Switch" of the application's ini file has
    /// for the identifier, if "Enable" in the chapter "Debug" is 1 or more, else 0. The level is written
    /// through pLevel and returned. A null pointer is an assertion failure. At the library's end: 0.
    static int RegisterLogPoint(int * pLevel, char const * sIdentifier, char const * sFile, int iLine);

    /// The application's ini file, read when the library was loaded; always open, and empty if there was
    /// none or a bad one. It must not be used any more once the library has been unloaded.
    static IniFile const & GetAppIni();

    /// The name of that file: the program's name and ".ini", to be found in the current directory. Throws
    /// an Exception of code 10 if the program's name cannot be found out.
    static String GetAppIniFileName();

    /// How a text is split; flags that can be combined.
    enum
    {
        eSplitTrimLeft = 1,
        eSplitTrimRight = 2,
        eSplitSkipEmpty = 8,    ///< empty parts are not put out
        eSplitQuotes = 16,      ///< double quotes protect what they enclose
        eSplitRemoveEscape = 32 ///< the escape character in front of a separator is removed
    };

    /// Splits the text at each separator without the escape character directly in front of it and returns
    /// the number of parts. What stands in double quotes is one part as it is, if the flag is set; a quote
    /// that is not closed protects all to the end.
    static unsigned int StringSplitter(
        String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape);

protected:
    /// The same without quotes; it appends to the parts and returns how many there are, 0 for an empty
    /// text.
    static int Split(
        String const & sText, std::vector<String> & vParts, char cSeparator, int iFlags, char cEscape);
};

} // namespace tsl
