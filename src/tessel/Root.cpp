#include <tessel/Root.h>

#include <tessel/Assertion.h>

#include <memory>

namespace tsl
{

static void DemandCopyable(ClassDescription const & oSource, Root const & oTarget)
{
    if (!oSource.IsDerivedClass(oTarget.GetClassDesc()))
        XAssertionFailed("false", "Root::Copy(oSource) : oSource ist nicht von this abgeleitet!");
}

ClassDescription const & Root::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & Root::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<Root>(nullptr, ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * Root::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

void Root::Set(Root const & oSource)
{
    if (&oSource == this)
        return;

    DemandCopyable(oSource.GetClassDesc(), *this);
    DoCopy(oSource);
}

void Root::Copy(Root const & oSource)
{
    Set(oSource);
}

Root * Root::GetCopy() const
{
    ClassDescription const & oClass = GetClassDesc();
    auto const fFactory = oClass.GetFactoryFunction();
    if (!fFactory)
        XAssertionFailed("fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!");

    Root * const pCopy = fFactory();
    if (pCopy == this)
        return pCopy;

    if (!pCopy)
        XAssertionFailed("pCopy", "Root::GetCopy : Factory-Funktion liefert kein Objekt!");

    std::unique_ptr<Root> pOwner(pCopy);
    DemandCopyable(oClass, *pOwner);
    pOwner->DoCopy(*this);
    return pOwner.release();
}

} // namespace tsl
