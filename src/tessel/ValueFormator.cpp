#include <tessel/ValueFormator.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueFormator>{};
template ClassDescription const &
Described<ValueFormator, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

// Not inline, so that the table and the type record of the class are in the library alone.
ValueFormator::~ValueFormator() = default;

} // namespace tsl
