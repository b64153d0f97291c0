#include <tessel/Configuration.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<Configuration>{};
template<>
ClassDescription const & Described<Configuration, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that the vtable and the type_info of the class are in the library only.
Configuration::~Configuration() = default;

} // namespace tsl
