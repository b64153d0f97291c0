#include <tessel/ValueValidator.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueValidator>{};
template<>
ClassDescription const & Described<ValueValidator, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that the vtable and the type_info of the class are in the library only.
ValueValidator::~ValueValidator() = default;

} // namespace tsl
