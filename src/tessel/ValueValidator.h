#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Abstract base for classes that check values.
///
/// The library has no such class and never calls one; it is here so that programs share a base. One thread at
/// a time uses an object, unless its class says otherwise.
class TSL_EXPORT ValueValidator : public Described<ValueValidator, Root, ClassDescription::eAbstract>
{
public:
    ~ValueValidator() override;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueValidator, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
