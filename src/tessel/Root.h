#pragma once

#include <tessel/ClassRepository.h>
#include <tessel/Export.h>

#include <memory>
#include <typeinfo>

namespace tsl
{

/// Common base of the library's objects: a run-time class description and polymorphic copies.
///
///     std::unique_ptr<Root> const pCopy(oMessage.GetCopy());
///     std::cout << pCopy->GetClassDesc().GetClassName();
///
/// A class derives from Described, which provides GetClassDesc, GetStaticClassDesc and CreateNew. A class
/// with a state of its own overrides DoCopy.
///
/// One thread at a time uses an object, unless its class says otherwise.
class TSL_EXPORT Root
{
public:
    Root(Root const &) {}
    Root & operator=(Root const &) { return *this; }

    /// The description of the object's class.
    virtual ClassDescription const & GetClassDesc() const;
    virtual ~Root() = default;
    /// The description of this class, and a new object of it; for Root itself, an assertion failure.
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    /// Copies the state of oSource, whose class must be the class of this object or derived from it; anything
    /// else is an assertion failure. Setting an object to itself does nothing.
    void Set(Root const & oSource);

    /// A new object of the same class and with the same state; the caller deletes it. A class whose
    /// description cannot create objects is an assertion failure.
    inline Root * GetCopy() const;

protected:
    Root() = default;

    /// The same as Set, for derived classes.
    void Copy(Root const & oSource);

    /// Copies the state of oSource, whose class has been checked: it is this class or derived from it.
    virtual void DoCopy(Root const & oSource) = 0;

private:
    struct TSL_EXPORT Private
    {
        [[noreturn]] static void FailForeignSource();
        [[noreturn]] static void FailNoFactory();
        [[noreturn]] static void FailNoCopy();
    };
};

// Inline for speed (R06, R12): what remains of it is little more than the calls of the class itself.
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

    // Fast path: an object of exactly this class, as nearly always, needs no virtual call for its
    // description.
    std::unique_ptr<Root> pOwner(pCopy);
    if (!oClass.IsOfType(typeid(*pCopy)) && !oClass.IsDerivedClass(pCopy->GetClassDesc())) [[unlikely]]
        Private::FailForeignSource();
    pOwner->DoCopy(*this);
    return pOwner.release();
}

} // namespace tsl
