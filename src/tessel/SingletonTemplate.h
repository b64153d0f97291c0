#pragma once

#include <tessel/Assertion.h>
#include <tessel/ClassRepository.h>
#include <tessel/Export.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/TypeName.h>

namespace tsl
{

/// Base of a class T of which the process has one object. The object is made on first use, also if several
/// threads come at once, and belongs to the registry of static objects, which deletes it at the end.
template<class T>
class TSL_EXPORT Singleton
{
public:
    Singleton(Singleton const &) {}
    Singleton & operator=(Singleton const &) { return *this; }

    virtual ClassDescription const & GetClassDesc() const { return GetStaticClassDesc(); }
    virtual ~Singleton() = default;

    // Neither this nor Instance may become a part of the user's code: the objects are those of the library,
    // and another compiler may give such objects names of its own and make them anew.
    [[gnu::noinline]] static ClassDescription const & GetStaticClassDesc()
    {
        static ClassDescription const & oDescription =
            DescribeClass<Singleton>(nullptr, ClassDescription::eConcrete, nullptr);
        return oDescription;
    }

    /// The one object. The first call makes it with the given function; later calls do not look at the
    /// argument. No function, and a function that gives no object, are assertion failures with the name of
    /// T as information.
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
