#include <tessel/MessageProcessorFactory.h>

namespace tsl
{

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
