#include <tessel/TaskFactory.h>

namespace tsl
{

template class Singleton<TaskFactoryBase>;
template class Factory<int, ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>,
    CriticalSectionMutex, bool>;
template class SelfRegistrationFactoryCallBack<TaskFactoryBase>;

TaskFactory & TaskFactory::Instance()
{
    static TaskFactory & oRef =
        static_cast<TaskFactory &>(TaskFactoryBase::Instance(&CreateSingletonInstance));
    return oRef;
}

TaskFactoryBase * TaskFactory::CreateSingletonInstance()
{
    return new TaskFactory;
}

} // namespace tsl
