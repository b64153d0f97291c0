#include <tessel/TaskFactory.h>

namespace tsl
{

template<>
ClassDescription const & Singleton<TaskFactoryBase>::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = Private::Describe();
    return oDescription;
}

template<>
TaskFactoryBase & Singleton<TaskFactoryBase>::Instance(TaskFactoryBase * (*fCreator)())
{
    static TaskFactoryBase & oObject = *RegisterSingletonObject(Private::InstanceEx(fCreator));
    return oObject;
}

template<>
TaskFactoryBase & TaskFactoryBase::Instance(TaskFactoryBase * (*fCreator)())
{
    static TaskFactoryBase & oRef = Singleton<TaskFactoryBase>::Instance(fCreator);
    return oRef;
}

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
