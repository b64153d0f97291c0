#pragma once

#include <tessel/Export.h>
#include <tessel/FactoryTemplate.h>
#include <tessel/Locks.h>
#include <tessel/MessageProcessor.h>

#include <string>

namespace tsl
{

/// Makes a processor by calling its creation function. The caller owns the processor. Any thread may use it.
class TSL_EXPORT MessageProcessorCreator : public ProductCreator<MessageProcessor, MessageProcessor * (*)()>
{
public:
    virtual ~MessageProcessorCreator() = default;
};

/// The base of MessageProcessorFactory.
using MessageProcessorFactoryBase = Factory<std::string,
    ProductCreator<MessageProcessor, MessageProcessor * (*)()>, CriticalSectionMutex, bool>;

template<>
TSL_EXPORT ClassDescription const & Singleton<MessageProcessorFactoryBase>::GetStaticClassDesc();
template<>
TSL_EXPORT MessageProcessorFactoryBase & Singleton<MessageProcessorFactoryBase>::Instance(
    MessageProcessorFactoryBase * (*fCreator)());
template<>
TSL_EXPORT MessageProcessorFactoryBase & MessageProcessorFactoryBase::Instance(
    MessageProcessorFactoryBase * (*fCreator)());
TSL_EXTERN_TEMPLATE(class Singleton<MessageProcessorFactoryBase>);
TSL_EXTERN_TEMPLATE(class Factory<std::string, ProductCreator<MessageProcessor, MessageProcessor * (*)()>,
    CriticalSectionMutex, bool>);

/// The creation functions of processors by class name, one table for the process. The library registers
/// "LogFileProcessor"; a program may add its own:
///
///     auto & oFactory = tsl::MessageProcessorFactory::Instance();
///     oFactory.Register("Printer", []() -> tsl::MessageProcessor * { return new Printer; });
///     std::unique_ptr<tsl::MessageProcessor> pPrinter(oFactory.CreateProcessor("Printer"));
///
/// Any thread may use it; see Factory.
class TSL_EXPORT MessageProcessorFactory : public MessageProcessorFactoryBase
{
public:
    /// The one factory, which is made by the first call.
    static MessageProcessorFactory & Instance();

    /// A new processor, which the caller owns, or null for an unknown name.
    MessageProcessor * CreateProcessor(std::string const & sName);

private:
    MessageProcessorFactory() = default;

    static MessageProcessorFactoryBase * CreateSingletonInstance();
};

TSL_EXTERN_TEMPLATE(class SelfRegistrationFactoryCallBack<MessageProcessorFactoryBase>);

/// An observer of this factory, which attaches and detaches itself; see SelfRegistrationFactoryCallBack. A program
/// derives from it and implements Invoke.
class TSL_EXPORT MessageProcessorFactoryCallBack
    : public SelfRegistrationFactoryCallBack<MessageProcessorFactoryBase>
{
public:
    MessageProcessorFactoryCallBack() = default;
};

} // namespace tsl
