#pragma once

#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Base of all configuration classes.
class TSL_EXPORT Configuration : public Root
{
public:
    Configuration(Configuration const &) = default;
    Configuration & operator=(Configuration const &) = default;

    ClassDescription const & GetClassDesc() const override;
    ~Configuration() override = default;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

protected:
    Configuration() = default;
};

} // namespace tsl
