#pragma once

#include <tessel/Export.h>
#include <tessel/StaticObjectRegistry.h>

namespace tsl
{

/// The library's only T of this kind, default constructed on the first call and registered as a lasting
/// object. Any thread may call.
template<class T>
TSL_HIDDEN T const & LastingObject()
{
    static T const & oObject = *RegisterLastingObject(new T);
    return oObject;
}

} // namespace tsl
