#pragma once

#include <tessel/Export.h>
#include <tessel/FactoryTemplate.h>
#include <tessel/Locks.h>
#include <tessel/Task.h>
#include <tessel/TaskProcessor.h>

namespace tsl
{

/// Makes a task for a machine, which owns the task.
using TaskCreationFunction = Task * (*)(TaskProcessor * pParent);

/// Makes a task for a given parent by calling its creation function. The caller owns the task. Any thread may use
/// it.
class TSL_EXPORT TaskCreator : public ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>
{
public:
    /// The parent must outlive the tasks.
    explicit TaskCreator(TaskProcessor * pParent) : ProductCreator1(pParent) {}
    virtual ~TaskCreator() = default;
};

/// The base of TaskFactory.
using TaskFactoryBase =
    Factory<int, ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>, CriticalSectionMutex, bool>;

template<>
TSL_EXPORT ClassDescription const & Singleton<TaskFactoryBase>::GetStaticClassDesc();
template<>
TSL_EXPORT TaskFactoryBase & Singleton<TaskFactoryBase>::Instance(TaskFactoryBase * (*fCreator)());
template<>
TSL_EXPORT TaskFactoryBase & TaskFactoryBase::Instance(TaskFactoryBase * (*fCreator)());
TSL_EXTERN_TEMPLATE(class Singleton<TaskFactoryBase>);
TSL_EXTERN_TEMPLATE(class Factory<int, ProductCreator1<Task, TaskCreationFunction, TaskProcessor *>,
    CriticalSectionMutex, bool>);

/// The creation functions of tasks by id, for all machines of the process. A program registers its tasks under ids
/// from 0 on; the library registers Task::TASK_FINE.
///
///     tsl::TaskFactory::Instance().Register(eRing,
///         [](tsl::TaskProcessor * pParent) -> tsl::Task * { return new Ring(pParent); });
///
/// Any thread may use it; see Factory.
class TSL_EXPORT TaskFactory : public TaskFactoryBase
{
public:
    /// The one factory, which is made by the first call.
    static TaskFactory & Instance();

private:
    TaskFactory() = default;

    static TaskFactoryBase * CreateSingletonInstance();
};

TSL_EXTERN_TEMPLATE(class SelfRegistrationFactoryCallBack<TaskFactoryBase>);

/// An observer of this factory, which attaches and detaches itself; see SelfRegistrationFactoryCallBack. A program
/// derives from it and implements Invoke.
class TSL_EXPORT TaskFactoryCallBack : public SelfRegistrationFactoryCallBack<TaskFactoryBase>
{
public:
    TaskFactoryCallBack() = default;
};

} // namespace tsl
