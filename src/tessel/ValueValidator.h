#pragma once

#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Abstract base of what says whether a value may stand. The library has none itself.
class TSL_EXPORT ValueValidator : public Root
{
public:
    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();
};

} // namespace tsl
