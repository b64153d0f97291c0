#include <tessel/Configuration.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<Configuration>{};
template ClassDescription const &
Described<Configuration, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

// Not inline, so that the table and the type record of the class are in the library alone.
Configuration::~Configuration() = default;

} // namespace tsl
