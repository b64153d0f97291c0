#include <tessel/NamedValueIterator.h>

#include <tessel/Assertion.h>
#include <tessel/String.h>

#include <string>

namespace tsl
{

/// The name of a class without its namespace, such as "FieldIterator<Greeting>".
static std::string GetBareName(std::string const & sClass)
{
    std::size_t const iColon = sClass.substr(0, sClass.find('<')).rfind(':');
    return sClass.substr(iColon == std::string::npos ? sizeof "class" : iColon + 1);
}

void TesselDetails::FailNoElement(char const * sIteratorClass, char const * sOperation)
{
    std::string const sText =
        GetBareName(sIteratorClass) + "::" + sOperation + "(): Zugriff auf ungültiges Element.";
    XAssertionFailed("false", sText.c_str());
}

} // namespace tsl
