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

/// Describes a class at run time: its name, its id, its source file, its registered base, and its factory
/// function.
///
///     ClassDescription const & oClass = oObject.GetClassDesc();
///     if (oClass.IsDerivedClass(Message::GetStaticClassDesc()))
///         std::cout << oClass.GetClassName();
///
/// Each class has at most one description, created on first use by its GetStaticClassDesc and owned by the
/// registry of static objects. A description is immutable, so any number of threads may read it.
class TSL_EXPORT ClassDescription
{
public:
    /// Creates an object, which the caller deletes.
    using FactoryFunction = Root * (*)();

    /// Whether the description can create objects.
    enum EKind
    {
        eConcrete, ///< it can
        eAbstract  ///< it cannot
    };

    /// Registers the description. The class id comes from the repository; iClassId is ignored. The texts and
    /// the base are not copied and must outlive the description. A null class name counts as "".
    ///
    /// pType is the class's type if every object of exactly that type has this description, else null.
    ClassDescription(char const * sClassName, unsigned int const & iClassId, char const * sFile,
        bool bAbstract, Root * (*fFactory)(), ClassDescription const * pBase,
        std::type_info const * pType = nullptr);
    ~ClassDescription();
    ClassDescription(ClassDescription const &) = delete;
    ClassDescription & operator=(ClassDescription const &) = delete;

    /// Descriptions are equal if their class ids are.
    bool operator==(ClassDescription const & oOther) const { return m_iClassId == oOther.m_iClassId; }
    bool operator!=(ClassDescription const & oOther) const { return m_iClassId != oOther.m_iClassId; }

    /// Unique within one run of the program and never 0. It depends on the order in which classes are first
    /// used, so do not store it or send it to another process.
    unsigned int const & GetClassId() const { return m_iClassId; }

    /// Such as "class tsl::Root".
    char const * GetClassName() const { return m_sClassName; }

    /// The same as GetClassName, which is a macro of this name in the headers of some systems.
    char const * GetClassNameA() const { return GetClassName(); }

    /// The description of the registered base; null if there is none.
    ClassDescription const * GetBaseClassDescription() const { return m_pBase; }

    /// The name of the base, or "<keine>".
    char const * GetBaseClassName() const;

    /// The source file that declared the class.
    char const * GetFile() const { return m_sFile; }

    /// Whether the description was made as eAbstract.
    bool IsAbstract() const { return m_bAbstract; }

    /// The factory function, whose result the caller deletes; null if there is none.
    Root * (*GetFactoryFunction() const)() { return m_fFactory; }

    /// Whether the class is oBase or derived from it, directly or not.
    bool IsDerivedClass(ClassDescription const & oBase) const
    {
        // Fast path of any depth (R12). Ids are unique, so the same class is the same object.
        return oBase.m_iDepth <= m_iDepth && m_aLine[oBase.m_iDepth] == &oBase;
    }

    /// True if objects of exactly that type have this description. False means only that this is not known.
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

/// The table of all class descriptions of the process. It does not own them.
///
///     std::unique_ptr<Root> const pObject(ClassRepository::Instance().CreateNew("class tsl::ValueString"));
///
/// Any thread may call at any time. Only the reference that GetClassList returns is not guarded: do not read it while
/// another thread may use a class for the first time. The names of unregistered classes stay in memory.
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

    /// Adds the description under the next class id and returns that id. The first id is 1.
    unsigned int Register(ClassDescription const & oDescription);

    /// Removes the entry of the description's class id, if there is one.
    void Unregister(ClassDescription const & oDescription);

    /// The description with that id, or null.
    ClassDescription const * GetClassDescription(unsigned int iClassId) const;

    /// A new object of the class with that name, as GetClassName returns it; the caller deletes it. Null for
    /// a null pointer and for a class that has not been used yet in this run. If several classes have the
    /// name, the one with the smallest id is used. A class without a factory function is an assertion
    /// failure.
    Root * CreateNew(char const * sClassName);

    /// Not supported: always an assertion failure.
    Root * CreateNew(ClassDescription const * pDescription);

    /// All descriptions by class id.
    std::map<unsigned int, ClassDescription const *> const & GetClassList() const;

    /// Writes a line per class to the standard output, in the order of the class ids.
    void Dump() const;

private:
    struct Private;
    std::shared_ptr<Private> m;
};

/// Creates the description of class T and registers it as a lasting static object. Call it once per class,
/// from a function-local static in T's GetStaticClassDesc. Described does this.
///
/// @param pBase the description of the registered base, or null
/// @param fFactory creates an object of T; null if the description cannot create objects
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
