#pragma once

#include <tessel/Assertion.h>
#include <tessel/Export.h>
#include <tessel/TypeName.h>

#include <memory>
#include <new>

namespace tsl
{

class ClassDescription;

/// A handle to a long-lived object of any type. It does not own the object, but can delete it. Programs rarely
/// need it: the function RegisterStaticObject below creates the handle.
class TSL_EXPORT StaticObjectPtrBase
{
public:
    // Nothing to copy: the base has no state.
    StaticObjectPtrBase(StaticObjectPtrBase const &) {}
    StaticObjectPtrBase & operator=(StaticObjectPtrBase const &) { return *this; }

    /// Destroys only the handle, not the object.
    virtual ~StaticObjectPtrBase();

    /// A new handle to the same object; the caller deletes it.
    virtual StaticObjectPtrBase * Clone() const = 0;

    /// The name of the object's type, valid as long as the code that created the handle is loaded.
    virtual char const * GetTypeName() const = 0;

    /// The address of the object; null after DeleteObject.
    virtual void * GetObject() const = 0;

    /// The object if it is a class description, else null.
    virtual ClassDescription const * GetDescription() const = 0;

    /// Deletes the object. Does nothing if the handle has already deleted it.
    virtual void DeleteObject() = 0;

protected:
    StaticObjectPtrBase() = default;
};

/// A handle to a T.
template<class T>
class StaticObjectPtr : public StaticObjectPtrBase
{
public:
    /// Null is an assertion failure.
    explicit StaticObjectPtr(T * pObject) : m_pObject(pObject)
    {
        if (!m_pObject)
            XAssertionFailed("pObj", "StaticObjectPtr::StaticObjectPtr : Pointer ist NULL!");
    }

    StaticObjectPtrBase * Clone() const override { return new StaticObjectPtr(*this); }
    char const * GetTypeName() const override { return tsl::GetTypeName<T>(); }
    void * GetObject() const override { return m_pObject; }
    ClassDescription const * GetDescription() const override { return nullptr; }

    void DeleteObject() override
    {
        delete m_pObject;
        m_pObject = nullptr;
    }

private:
    T * m_pObject;
};

template<>
inline ClassDescription const * StaticObjectPtr<ClassDescription>::GetDescription() const
{
    return m_pObject;
}

/// Owns objects that live until the library is unloaded or the process ends. They are deleted in the reverse
/// order of their registration.
///
///     static Table & oTable = *RegisterStaticObject(new Table); // any thread may be the first here
///
/// Lasting objects are deleted after all others, in reverse order as well. They are what destructors of other
/// objects may still need, for example for a report: class descriptions, converters, null values.
///
/// At the end of the process other threads may still run. Then only the objects that the program has
/// registered are deleted, neither lasting objects nor what the library created while it was loaded.
///
/// Any thread may register. A destructor of a registered object may register further objects, which are
/// deleted next. A registration takes O(log n) for n objects.
class TSL_EXPORT StaticObjectRegistry
{
public:
    /// The one registry, created on the first call and destroyed when the library is unloaded.
    static StaticObjectRegistry & Instance();

    /// Takes ownership of the object. Returns the stored copy of the handle, valid until the object is
    /// deleted. An object that is already registered is an assertion failure.
    StaticObjectPtrBase const & RegisterStaticObject(StaticObjectPtrBase const & oHandle);

    /// The same for an object that destructors of others may need.
    StaticObjectPtrBase const & RegisterLastingObject(StaticObjectPtrBase const & oHandle);

    /// Takes ownership of the object, unless one with the same type name is already registered. In that case
    /// the new object is deleted, and the handle that was registered right after the first match is returned.
    /// If the match was registered last, that is an assertion failure.
    StaticObjectPtrBase const & RegisterSingletonObject(StaticObjectPtrBase & oHandle);

    /// Writes the types of all registered objects to the standard output, oldest first.
    void Dump() const;

    StaticObjectRegistry(StaticObjectRegistry const &) = delete;
    StaticObjectRegistry & operator=(StaticObjectRegistry const &) = delete;

private:
    friend class LibraryLoad;

    StaticObjectRegistry();
    ~StaticObjectRegistry();

    TSL_HIDDEN StaticObjectPtrBase const & Register(StaticObjectPtrBase const & oHandle, bool bLasting);

    /// Marks what has been registered so far as the library's own.
    TSL_HIDDEN void KeepPresentObjects();

    struct Private;
    struct End;
    std::unique_ptr<Private> m;
};

/// Gives an object to the registry and returns it. Null is an assertion failure. Without memory the object is
/// deleted and std::bad_alloc is thrown, as by the two functions below.
template<class T>
T * RegisterStaticObject(T * pObject)
{
    if (!pObject)
        XAssertionFailed("pObj", "RegisterStaticObject : Pointer ist NULL!");

    StaticObjectPtr<T> oHandle(pObject);
    try
    {
        StaticObjectRegistry::Instance().RegisterStaticObject(oHandle);
    }
    catch (std::bad_alloc const &)
    {
        oHandle.DeleteObject(); // nobody else has it
        throw;
    }
    return pObject;
}

/// The same for an object that destructors of others may need.
template<class T>
T * RegisterLastingObject(T * pObject)
{
    StaticObjectPtr<T> oHandle(pObject);
    try
    {
        StaticObjectRegistry::Instance().RegisterLastingObject(oHandle);
    }
    catch (std::bad_alloc const &)
    {
        oHandle.DeleteObject(); // nobody else has it
        throw;
    }
    return pObject;
}

/// Gives the object of a singleton type to the registry, by StaticObjectRegistry::RegisterSingletonObject,
/// and returns the object of the handle that this returns. Null is an assertion failure.
template<class T>
T * RegisterSingletonObject(T * pObject)
{
    if (!pObject)
        XAssertionFailed("pObj", "RegisterSingletonObject : Pointer ist NULL!");

    StaticObjectPtr<T> oHandle(pObject);
    try
    {
        return static_cast<T *>(
            StaticObjectRegistry::Instance().RegisterSingletonObject(oHandle).GetObject());
    }
    catch (std::bad_alloc const &)
    {
        oHandle.DeleteObject(); // nobody else has it
        throw;
    }
}

} // namespace tsl
