#include <tessel/ClassRepository.h>

#include "ClassNames.h"
#include "OwnMutex.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/ScopedLock.h>

#include <algorithm>
#include <iostream>
#include <new>
#include <string>

namespace tsl
{

ClassDescription::ClassDescription(char const * sClassName, unsigned int const & iClassId, char const * sFile,
    bool bAbstract, Root * (*fFactory)(), ClassDescription const * pBase, std::type_info const * pType)
    : m_iClassId(iClassId),
      m_sClassName(sClassName ? sClassName : ""),
      m_sFile(sFile),
      m_bAbstract(bAbstract),
      m_pBase(pBase == this ? nullptr : pBase),
      m_fFactory(fFactory),
      m_pType(pType),
      m_iDepth(m_pBase ? m_pBase->m_iDepth + 1 : 0),
      m_aLine(std::make_unique<ClassDescription const *[]>(m_iDepth + 1))
{
    if (m_pBase)
        std::copy_n(m_pBase->m_aLine.get(), m_iDepth, m_aLine.get());
    m_aLine[m_iDepth] = this;
    m_iClassId = ClassRepository::Instance().Register(*this);
}

ClassDescription::~ClassDescription()
{
    ClassRepository::Instance().Unregister(*this);
}

char const * ClassDescription::GetBaseClassName() const
{
    return m_pBase ? m_pBase->GetClassName() : "<keine>";
}

struct TSL_HIDDEN ClassRepository::Private
{
    std::map<unsigned int, ClassDescription const *> oClasses;
    ClassNames oNames;
    OwnMutex oLock;
};

ClassRepository::ClassRepository() : m(std::make_shared<Private>()) {}
ClassRepository::ClassRepository(ClassRepository const & oSource) = default;
ClassRepository & ClassRepository::operator=(ClassRepository const & oSource) = default;

ClassRepository::~ClassRepository()
{
    if (m.use_count() > 1 || m->oClasses.empty())
        return;

    // A class was described and not unregistered. Report it if the bus still exists. An exception that leaves
    // the destructor would terminate the program.
    try
    {
        XAssertionFailed("false", "Unknown");
    }
    catch (Exception const &)
    {
    }
}

ClassRepository & ClassRepository::Instance()
{
    static ClassRepository & oRepository = *RegisterLastingObject(new ClassRepository);
    return oRepository;
}

unsigned int ClassRepository::Register(ClassDescription const & oDescription)
{
    WriteLock const oScope(m->oLock);
    static unsigned int & iCounter = *RegisterLastingObject(new unsigned int(0));
    ++iCounter;
    auto const oEntry = m->oClasses.emplace(iCounter, &oDescription).first;
    try
    {
        m->oNames.Add(oDescription);
    }
    catch (std::bad_alloc const &)
    {
        m->oClasses.erase(oEntry); // The description is not constructed, so nobody will unregister it.
        throw;
    }
    return iCounter;
}

void ClassRepository::Unregister(ClassDescription const & oDescription)
{
    WriteLock const oScope(m->oLock);
    if (m->oClasses.erase(oDescription.GetClassId()) > 0)
        m->oNames.Remove(oDescription);
}

ClassDescription const * ClassRepository::GetClassDescription(unsigned int iClassId) const
{
    ReadLock const oScope(m->oLock);
    auto const oEntry = m->oClasses.find(iClassId);
    return oEntry == m->oClasses.end() ? nullptr : oEntry->second;
}

Root * ClassRepository::CreateNew(char const * sClassName)
{
    if (!sClassName)
        return nullptr;

    ClassDescription::FactoryFunction const fFactory = m->oNames.FindFactory(sClassName);
    if (!fFactory)
        XAssertionFailed("fFactory", "ClassRepository::CreateNew : Klasse hat keine Factory-Funktion!");
    return fFactory();
}

Root * ClassRepository::CreateNew(ClassDescription const *)
{
    XAssertionFailed("false", "Unknown");
}

std::map<unsigned int, ClassDescription const *> const & ClassRepository::GetClassList() const
{
    return m->oClasses;
}

void ClassRepository::Dump() const
{
    std::string sLines;
    {
        ReadLock const oScope(m->oLock);
        for (auto const & [iClassId, pDescription] : m->oClasses)
            sLines +=
                "ClassId=" + std::to_string(iClassId) + ", Class=" + pDescription->GetClassName() + "\n";
    }
    // Without the lock: the stream buffer may be the program's, and its code may use the repository.
    std::cout << sLines << std::flush;
}

} // namespace tsl
