#pragma once

#include <tessel/Export.h>
#include <tessel/FactoryTemplate.h>
#include <tessel/Locks.h>
#include <tessel/MessageProcessor.h>

#include <string>

namespace tsl
{

/// Makes a processor with its creation function.
class TSL_EXPORT MessageProcessorCreator : public ProductCreator<MessageProcessor, MessageProcessor * (*)()>
{
public:
    virtual ~MessageProcessorCreator() = default;
};

using MessageProcessorFactoryBase = Factory<std::string,
    ProductCreator<MessageProcessor, MessageProcessor * (*)()>, CriticalSectionMutex, bool>;

extern template class Singleton<MessageProcessorFactoryBase>;
extern template class Factory<std::string, ProductCreator<MessageProcessor, MessageProcessor * (*)()>,
    CriticalSectionMutex, bool>;

/// The processor classes by name. The library has "LogFileProcessor"; an application may add its own.
class TSL_EXPORT MessageProcessorFactory : public MessageProcessorFactoryBase
{
public:
    static MessageProcessorFactory & Instance();

    /// A new processor, which the caller owns, or null for an unknown name.
    MessageProcessor * CreateProcessor(std::string const & sName);

private:
    MessageProcessorFactory() = default;

    static MessageProcessorFactoryBase * CreateSingletonInstance();
};

extern template class SelfRegistrationFactoryCallBack<MessageProcessorFactoryBase>;

/// An observer of the factory that attaches itself. An application derives from it and implements Invoke.
class TSL_EXPORT MessageProcessorFactoryCallBack
    : public SelfRegistrationFactoryCallBack<MessageProcessorFactoryBase>
{
public:
    MessageProcessorFactoryCallBack() = default;
};

} // namespace tsl
