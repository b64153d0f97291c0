#include <tessel/TypeName.h>

#include "platform/TypeNames.h"

namespace tsl
{

std::string GetTypeName(std::type_info const & oType)
{
    return "class " + Platform::DecodeTypeName(oType.name());
}

} // namespace tsl
