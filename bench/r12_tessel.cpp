// Polymorphic copies, creation by class name, and the is-a test.

#include "r12_objects_tessel.h"

#include <benchmark/benchmark.h>

#include <tessel/ClassRepository.h>

#include <memory>

static void CopyMessage(benchmark::State & oState)
{
    std::unique_ptr<tsl::Root> const pSource(tslbench::Record::CreateNew());
    for (auto _ : oState)
    {
        tsl::Root * const pCopy = pSource->GetCopy();
        benchmark::DoNotOptimize(pCopy);
        delete pCopy;
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(CopyMessage)->Name("R12.clone and delete, 96 bytes/tessel:GetCopy");

static void CreateByName(benchmark::State & oState)
{
    char const * const sName = tslbench::Record::GetStaticClassDesc().GetClassName();
    for (auto _ : oState)
    {
        tsl::Root * const pObject = tsl::ClassRepository::Instance().CreateNew(sName);
        benchmark::DoNotOptimize(pObject);
        delete pObject;
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(CreateByName)->Name("R12.create by class name/tessel:ClassRepository::CreateNew");

static void IsDerived(benchmark::State & oState)
{
    std::unique_ptr<tsl::Root> const pOwner(tslbench::Record3::CreateNew());
    tsl::Root * pObject = pOwner.get();
    tsl::ClassDescription const & oBase = tslbench::Record::GetStaticClassDesc();
    for (auto _ : oState)
    {
        benchmark::DoNotOptimize(pObject);
        benchmark::DoNotOptimize(pObject->GetClassDesc().IsDerivedClass(oBase));
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(IsDerived)->Name("R12.is-a test, base 3 levels up/tessel:IsDerivedClass");
