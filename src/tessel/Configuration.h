#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Base of all configuration classes.
class TSL_EXPORT Configuration : public Described<Configuration, Root, ClassDescription::eAbstract>
{
public:
    Configuration(Configuration const &) = default;
    Configuration & operator=(Configuration const &) = default;

    ~Configuration() override;

protected:
    Configuration() = default;
};

extern template ClassDescription const &
Described<Configuration, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
