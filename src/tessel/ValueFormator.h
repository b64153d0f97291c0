#pragma once

#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Abstract base of what puts a value into its normal form. The library has none itself.
class TSL_EXPORT ValueFormator : public Root
{
public:
    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();
};

} // namespace tsl
