#include <tessel/ValueFormator.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueFormator>{};
template<>
ClassDescription const & Described<ValueFormator, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that the vtable and the type_info of the class are in the library only.
ValueFormator::~ValueFormator() = default;

} // namespace tsl
