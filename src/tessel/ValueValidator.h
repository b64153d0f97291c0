#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Abstract base of what says whether a value may stand. The library has none itself.
class TSL_EXPORT ValueValidator : public Described<ValueValidator, Root, ClassDescription::eAbstract>
{
public:
    ~ValueValidator() override;
};

extern template ClassDescription const &
Described<ValueValidator, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
