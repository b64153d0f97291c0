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
    for (auto _ : oState)
    {
        for (int i = 0; i < 8; ++i)
        {
            asm volatile("" : "+r"(pObject) : : "memory");
            bool const bDerived =
                pObject->GetClassDesc().IsDerivedClass(tslbench::Record::GetStaticClassDesc());
            benchmark::DoNotOptimize(bDerived);
        }
    }
    oState.SetItemsProcessed(oState.iterations() * 8);
}
BENCHMARK(IsDerived)->Name("R12.is-a test, base 3 levels up/tessel:IsDerivedClass");
