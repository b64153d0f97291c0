#pragma once

#include <tessel/ClassRepository.h>
#include <tessel/Export.h>

#include <memory>
#include <typeinfo>

namespace tsl
{

/// Common base of the library's objects: it gives them a run-time class and polymorphic copying.
///
/// A class that takes part in the class system derives from Described, and has DoCopy of its own if it has a state.
/// Its operations GetClassDesc, first among the virtual ones, the static GetStaticClassDesc and the static CreateNew
/// come from there.
///
/// An object is used by one thread at a time unless its class says otherwise.
class TSL_EXPORT Root
{
public:
    Root(Root const &) {}
    Root & operator=(Root const &) { return *this; }

    virtual ClassDescription const & GetClassDesc() const;
    virtual ~Root() = default;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    /// Takes over the state of the source, which must be of this object's class or of one derived from
    /// it; anything else is an assertion failure. The object itself as source changes nothing.
    void Set(Root const & oSource);

    /// A new object of the same dynamic class and state; the caller deletes it. A class that cannot be
    /// made from its description is an assertion failure.
    inline Root * GetCopy() const;

protected:
    Root() = default;

    /// Set under a second name, for derived classes.
    void Copy(Root const & oSource);

    /// Copies the state of the source, which has been found to be of this class or derived from it.
    virtual void DoCopy(Root const & oSource) = 0;

private:
    struct Private
    {
        [[noreturn]] static void FailForeignSource();
        [[noreturn]] static void FailNoFactory();
        [[noreturn]] static void FailNoCopy();
    };
};

// In the header, since messages are copied all the time and what is left here is hardly more than the calls
// of the class itself.
inline Root * Root::GetCopy() const
{
    ClassDescription const & oClass = GetClassDesc();
    auto const fFactory = oClass.GetFactoryFunction();
    if (!fFactory) [[unlikely]]
        Private::FailNoFactory();

    Root * const pCopy = fFactory();
    if (pCopy == this)
        return pCopy;
    if (!pCopy) [[unlikely]]
        Private::FailNoCopy();

    // An object of the very class need not be asked for its description, which is nearly always so.
    std::unique_ptr<Root> pOwner(pCopy);
    if (!oClass.IsOfType(typeid(*pCopy)) && !oClass.IsDerivedClass(pCopy->GetClassDesc())) [[unlikely]]
        Private::FailForeignSource();
    pOwner->DoCopy(*this);
    return pOwner.release();
}

} // namespace tsl
