#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

/// Base of the configuration classes, which carry the settings of an object of the library.
///
/// A program derives from the configuration class of what it uses and overrides what differs:
///
///     class ClockConfig : public ConsoleApplicationConfig
///     {
///         // ...
///     };
///
/// One thread at a time uses an object. The class that takes it says who owns it.
class TSL_EXPORT Configuration : public Described<Configuration, Root, ClassDescription::eAbstract>
{
public:
    Configuration(Configuration const &) = default;
    Configuration & operator=(Configuration const &) = default;

    ~Configuration() override;

protected:
    Configuration() = default;
};

template<>
TSL_EXPORT ClassDescription const &
Described<Configuration, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
