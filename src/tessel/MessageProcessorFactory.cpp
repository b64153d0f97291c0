#include <tessel/MessageProcessorFactory.h>

namespace tsl
{

template<>
ClassDescription const & Singleton<MessageProcessorFactoryBase>::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = Private::Describe();
    return oDescription;
}

template<>
MessageProcessorFactoryBase & Singleton<MessageProcessorFactoryBase>::Instance(
    MessageProcessorFactoryBase * (*fCreator)())
{
    static MessageProcessorFactoryBase & oObject = *RegisterSingletonObject(Private::InstanceEx(fCreator));
    return oObject;
}

template<>
MessageProcessorFactoryBase & MessageProcessorFactoryBase::Instance(
    MessageProcessorFactoryBase * (*fCreator)())
{
    static MessageProcessorFactoryBase & oRef = Singleton<MessageProcessorFactoryBase>::Instance(fCreator);
    return oRef;
}

template class Singleton<MessageProcessorFactoryBase>;
template class Factory<std::string, ProductCreator<MessageProcessor, MessageProcessor * (*)()>,
    CriticalSectionMutex, bool>;
template class SelfRegistrationFactoryCallBack<MessageProcessorFactoryBase>;

MessageProcessorFactory & MessageProcessorFactory::Instance()
{
    static MessageProcessorFactory & oRef = static_cast<MessageProcessorFactory &>(
        MessageProcessorFactoryBase::Instance(&CreateSingletonInstance));
    return oRef;
}

MessageProcessor * MessageProcessorFactory::CreateProcessor(std::string const & sName)
{
    return CreateProduct(sName, MessageProcessorCreator());
}

MessageProcessorFactoryBase * MessageProcessorFactory::CreateSingletonInstance()
{
    return new MessageProcessorFactory;
}

} // namespace tsl
