#pragma once

#include <tessel/Export.h>
#include <tessel/FactoryTemplate.h>
#include <tessel/Locks.h>
#include <tessel/Task.h>
#include <tessel/TaskProcessor.h>

namespace tsl
{

/// How a task is made for the machine that it becomes a state of; the machine owns it.
using TaskCreationFunction = Task * (*)(TaskProcessor * pParent);

/// Makes a task with its creation function for a given parent.
class TSL_EXPORT TaskCreator : public ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>
{
public:
    explicit TaskCreator(TaskProcessor * pParent) : ProductCreator1(pParent) {}
    virtual ~TaskCreator() = default;
};

using TaskFactoryBase =
    Factory<int, ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>, CriticalSectionMutex, bool>;

extern template class Singleton<TaskFactoryBase>;
extern template class Factory<int, ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>,
    CriticalSectionMutex, bool>;

/// The task classes by id, for all machines of the process. An application registers its tasks under ids
/// from 0 on; the library has Task::TASK_FINE.
class TSL_EXPORT TaskFactory : public TaskFactoryBase
{
public:
    static TaskFactory & Instance();

private:
    TaskFactory() = default;

    static TaskFactoryBase * CreateSingletonInstance();
};

extern template class SelfRegistrationFactoryCallBack<TaskFactoryBase>;

/// An observer of the factory that attaches itself. An application derives from it and implements Invoke.
class TSL_EXPORT TaskFactoryCallBack : public SelfRegistrationFactoryCallBack<TaskFactoryBase>
{
public:
    TaskFactoryCallBack() = default;
};

} // namespace tsl
