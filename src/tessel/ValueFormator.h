#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Abstract base of what puts a value into its normal form. The library has none itself.
class TSL_EXPORT ValueFormator : public Described<ValueFormator, Root, ClassDescription::eAbstract>
{
public:
    ~ValueFormator() override;
};

extern template ClassDescription const &
Described<ValueFormator, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
