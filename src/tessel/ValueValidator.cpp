#include <tessel/ValueValidator.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueValidator>{};
template ClassDescription const &
Described<ValueValidator, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

// Not inline, so that the table and the type record of the class are in the library alone.
ValueValidator::~ValueValidator() = default;

} // namespace tsl
