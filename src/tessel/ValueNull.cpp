#include <tessel/ValueNull.h>

#include "LastingObject.h"

#include <tessel/ValueNullConverter.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueNull>{};
template<>
ClassDescription const & Described<ValueNull, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverter const & ValueNull::GetConverter() const
{
    return LastingObject<ValueNullConverter>();
}

ValueNull const & ValueNull::Null()
{
    return LastingObject<ValueNull>();
}

} // namespace tsl
