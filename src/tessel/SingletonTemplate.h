#pragma once

#include <tessel/Assertion.h>
#include <tessel/ClassRepository.h>
#include <tessel/Export.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/TypeName.h>

namespace tsl
{

/// Base of a class T of which the process has one object.
///
///     class Settings : public Singleton<Settings>
///     {
///     public:
///         static Settings & Instance() { return Singleton::Instance([] { return new Settings; }); }
///     };
///
/// The first use creates the object; any thread may be the first. The registry of static objects owns it and
/// deletes it at the end of the process.
template<class T>
class TSL_EXPORT_TEMPLATE Singleton
{
public:
    Singleton(Singleton const &) {}
    Singleton & operator=(Singleton const &) { return *this; }

    /// The description of this base.
    virtual ClassDescription const & GetClassDesc() const { return GetStaticClassDesc(); }
    virtual ~Singleton() = default;

    // Neither this nor Instance may be inlined into user code: for the library's singletons the static
    // objects must be those of the library, and another compiler may name them differently and so create them
    // again.
    /// The same, without an object.
    [[gnu::noinline]] static ClassDescription const & GetStaticClassDesc()
    {
        static ClassDescription const & oDescription = Private::Describe();
        return oDescription;
    }

    /// The one object. The first call creates it by fCreator; later calls ignore the argument. A null
    /// function and a function that returns null are assertion failures with the name of T as information;
    /// the next call tries again.
    [[gnu::noinline]] static T & Instance(T * (*fCreator)())
    {
        static T & oObject = *RegisterSingletonObject(Private::InstanceEx(fCreator));
        return oObject;
    }

protected:
    Singleton() = default;

private:
    struct TSL_HIDDEN Private
    {
        static ClassDescription const & Describe()
        {
            return DescribeClass<Singleton>(nullptr, ClassDescription::eConcrete, nullptr);
        }

        static T * InstanceEx(T * (*fCreator)())
        {
            if (fCreator == nullptr)
                XAssertionFailed("pCreatorFunc!=NULL", GetTypeName<T>());

            T * const pObject = fCreator();
            if (pObject == nullptr)
                XAssertionFailed("pObj!=NULL", GetTypeName<T>());
            return pObject;
        }
    };
};

} // namespace tsl
