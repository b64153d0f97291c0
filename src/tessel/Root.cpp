#include <tessel/Root.h>

#include <tessel/Assertion.h>

namespace tsl
{

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

    if (!oSource.GetClassDesc().IsDerivedClass(GetClassDesc()))
        Private::FailForeignSource();
    DoCopy(oSource);
}

void Root::Copy(Root const & oSource)
{
    Set(oSource);
}

void Root::Private::FailForeignSource()
{
    XAssertionFailed("false", "Root::Copy(oSource) : oSource ist nicht von this abgeleitet!");
}

void Root::Private::FailNoFactory()
{
    XAssertionFailed("fFactory", "Root::GetCopy : Klasse hat keine Factory-Funktion!");
}

void Root::Private::FailNoCopy()
{
    XAssertionFailed("pCopy", "Root::GetCopy : Factory-Funktion liefert kein Objekt!");
}

} // namespace tsl
