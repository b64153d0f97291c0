#pragma once

#include <tessel/Assertion.h>
#include <tessel/Export.h>
#include <tessel/TypeName.h>

#include <memory>
#include <new>

namespace tsl
{

class ClassDescription;

/// A handle on one long-lived object of any type. The handle is not the object's owner, except that
/// DeleteObject ends it.
class TSL_EXPORT StaticObjectPtrBase
{
public:
    StaticObjectPtrBase(StaticObjectPtrBase const &) {}
    StaticObjectPtrBase & operator=(StaticObjectPtrBase const &) { return *this; }

    /// Ends the handle, never the object.
    virtual ~StaticObjectPtrBase();

    /// A new handle on the same object; the caller deletes it.
    virtual StaticObjectPtrBase * Clone() const = 0;

    /// The display text of the object's type; lives as long as the code that made the handle.
    virtual char const * GetTypeName() const = 0;

    virtual void * GetObject() const = 0;

    /// The object itself if it is a class description, else null.
    virtual ClassDescription const * GetDescription() const = 0;

    /// Deletes the object and forgets it; does nothing the second time.
    virtual void DeleteObject() = 0;

protected:
    StaticObjectPtrBase() = default;
};

/// The handle on a T. A null pointer is an assertion failure.
template<class T>
class StaticObjectPtr : public StaticObjectPtrBase
{
public:
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

/// Owner of the library's long-lived objects. Each is made on first use and handed over here; when the
/// library is unloaded all are deleted in the reverse order of their registration, so that what an object
/// was built on outlives it.
///
/// What an object was built on is not all that it may need: its destructor may report something, and show a
/// value, the first of its kind. So class descriptions, converters, null values and their like are registered
/// as lasting objects, which are deleted when no other object is left, in the reverse order as well.
///
/// At the end of the process, which other threads may not have noticed yet, the objects of the program are
/// deleted likewise, but neither the lasting objects nor what the library has made for itself.
///
/// A registration takes O(log n) for n objects.
///
/// Any thread may register. An object that is deleted at the end may register further objects, which are
/// deleted in turn.
class TSL_EXPORT StaticObjectRegistry
{
public:
    /// The one registry, made on the first call and destroyed when the library is unloaded.
    static StaticObjectRegistry & Instance();

    /// Takes the object over. The handle is copied, and the stored copy is returned. An object that is
    /// registered already is an assertion failure.
    StaticObjectPtrBase const & RegisterStaticObject(StaticObjectPtrBase const & oHandle);

    /// The same for an object that others may need in their destructors.
    StaticObjectPtrBase const & RegisterLastingObject(StaticObjectPtrBase const & oHandle);

    /// Takes the object over unless an object of a type of the same name is registered already. In that
    /// case the new object is deleted, and the handle registered next after the one that matched is
    /// returned; if the match was the newest, there is none, which is an assertion failure.
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

    /// What has been registered up to now belongs to the library itself.
    TSL_HIDDEN void KeepPresentObjects();

    struct Private;
    struct End;
    std::unique_ptr<Private> m;
};

/// Hands an object over to the registry and returns it. Null is an assertion failure.
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

/// The same for an object that others may need in their destructors.
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

/// Hands the object of a singleton type over to the registry and returns what the registry holds for the
/// type, which may be another object than the argument. Null is an assertion failure.
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
