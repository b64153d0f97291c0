#pragma once

#include <tessel/Export.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/TypeName.h>

#include <cstddef>
#include <map>
#include <memory>
#include <typeinfo>

namespace tsl
{

class Root;

/// What the library knows of a class at run time: its name, its id, where it comes from, its registered
/// base, and how an object of it is made.
///
/// Each class has at most one description, made on first use by its GetStaticClassDesc. A description
/// does not change, so any number of threads may read it.
class TSL_EXPORT ClassDescription
{
public:
    using FactoryFunction = Root * (*)();

    enum EKind
    {
        eConcrete, ///< can be made from its description
        eAbstract  ///< cannot
    };

    /// Stores all arguments and registers the description, which is where the class id comes from; the
    /// one given is not kept. The texts and the base are not owned and must outlive the description. A class name
    /// that is null counts as "".
    ///
    /// pType is the class itself if every object of it has this description, else null.
    ClassDescription(char const * sClassName, unsigned int const & iClassId, char const * sFile,
        bool bAbstract, Root * (*fFactory)(), ClassDescription const * pBase,
        std::type_info const * pType = nullptr);
    ~ClassDescription();
    ClassDescription(ClassDescription const &) = delete;
    ClassDescription & operator=(ClassDescription const &) = delete;

    /// Two descriptions are the same if their class ids are.
    bool operator==(ClassDescription const & oOther) const { return m_iClassId == oOther.m_iClassId; }
    bool operator!=(ClassDescription const & oOther) const { return m_iClassId != oOther.m_iClassId; }

    /// Unique within one run of the program, never 0; it depends on the order in which classes are first
    /// used, so it must not be stored or sent to another process.
    unsigned int const & GetClassId() const { return m_iClassId; }

    /// Such as "class tsl::Root".
    char const * GetClassName() const { return m_sClassName; }

    /// The same, under the name that the headers of some systems turn the other into.
    char const * GetClassNameA() const { return GetClassName(); }

    /// Null at the top of a hierarchy.
    ClassDescription const * GetBaseClassDescription() const { return m_pBase; }

    /// The name of the base, or "<keine>".
    char const * GetBaseClassName() const;

    /// The source file that declared the class.
    char const * GetFile() const { return m_sFile; }

    bool IsAbstract() const { return m_bAbstract; }

    /// The class's CreateNew, or null.
    Root * (*GetFactoryFunction() const)() { return m_fFactory; }

    /// Whether the class is the given one or stands below it.
    bool IsDerivedClass(ClassDescription const & oBase) const
    {
        // Fast path of any depth (R12). Ids are unique, so the same class is the same object.
        return oBase.m_iDepth <= m_iDepth && m_aLine[oBase.m_iDepth] == &oBase;
    }

    /// True if objects of exactly that class have this description. False says nothing.
    bool IsOfType(std::type_info const & oType) const { return m_pType == &oType; }

private:
    unsigned int m_iClassId;
    char const * m_sClassName;
    char const * m_sFile;
    bool m_bAbstract;
    ClassDescription const * m_pBase;
    FactoryFunction m_fFactory;
    std::type_info const * m_pType;
    std::size_t m_iDepth;                                ///< the number of bases
    std::unique_ptr<ClassDescription const *[]> m_aLine; ///< from the top of the hierarchy down to this class
};

/// The table of all class descriptions of the process. It owns none of them.
///
/// Any thread may use it at any time, so that classes may be touched first on any thread. The reference that
/// GetClassList returns is for reading while no class is touched for the first time. The names of classes that have
/// been unregistered stay in memory.
class TSL_EXPORT ClassRepository
{
public:
    ClassRepository();
    virtual ~ClassRepository();

    /// Copies share one table.
    ClassRepository(ClassRepository const & oSource);
    ClassRepository & operator=(ClassRepository const & oSource);

    /// The one repository that descriptions register with.
    static ClassRepository & Instance();

    /// Enters the description under the next class id and returns that. The first id of a run is 1.
    unsigned int Register(ClassDescription const & oDescription);

    /// Removes the entry of the description's class id, if there is one.
    void Unregister(ClassDescription const & oDescription);

    /// The description with that id, or null.
    ClassDescription const * GetClassDescription(unsigned int iClassId) const;

    /// A new object of the class of that name, given exactly as GetClassName has it; the caller deletes
    /// it. Null if no such class is known yet. Where several classes have the name, the smallest id
    /// counts. A class that cannot be made is an assertion failure.
    Root * CreateNew(char const * sClassName);

    /// Not in service: always an assertion failure.
    Root * CreateNew(ClassDescription const * pDescription);

    /// All descriptions by class id.
    std::map<unsigned int, ClassDescription const *> const & GetClassList() const;

    /// Writes a line per class to the standard output, in the order of the class ids.
    void Dump() const;

private:
    struct Private;
    std::shared_ptr<Private> m;
};

/// Makes the one description of class T and hands it to the registry of static objects. For use in the
/// function-local static of T's GetStaticClassDesc.
///
/// @param pBase the registered base, null at the top; taking it makes the base's description first
/// @param fFactory T's CreateNew, or null if objects cannot be made from the description
template<class T>
ClassDescription const & DescribeClass(ClassDescription const * pBase, ClassDescription::EKind eKind,
    ClassDescription::FactoryFunction fFactory, char const * sFile = __builtin_FILE())
{
    constexpr unsigned int iNoClassId = 0xFFFFFFFF;
    bool const bAbstract = eKind == ClassDescription::eAbstract;
    return *RegisterLastingObject(
        new ClassDescription(GetTypeName<T>(), iNoClassId, sFile, bAbstract, fFactory, pBase, &typeid(T)));
}

} // namespace tsl
