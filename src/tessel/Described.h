#pragma once

#include <tessel/Assertion.h>
#include <tessel/ClassRepository.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

#include <atomic>
#include <type_traits>

namespace tsl
{

/// A file and line of the source.
struct ClassSource
{
    /// By default the place of the call.
    constexpr ClassSource(char const * sTheFile = __builtin_FILE(), int iTheLine = __builtin_LINE())
        : sFile(sTheFile), iLine(iTheLine)
    {
    }

    char const * sFile; ///< is not copied
    int iLine;          ///< counted from 1
};

/// The source place in the description of the class T. It is empty unless the file of the class specialises
/// it after the class:
///
///     template<>
///     inline constexpr tsl::ClassSource tsl::CLASS_SOURCE<EvenLength>{};
template<class T>
inline constexpr ClassSource CLASS_SOURCE{"", 0};

namespace TesselDetails
{

template<class T, ClassDescription::EKind eKind>
Root * MakeObject()
{
    if constexpr (eKind == ClassDescription::eAbstract)
        XAssertionFailed("false", "Unknown", CLASS_SOURCE<T>.sFile, CLASS_SOURCE<T>.iLine);
    else
    {
        static_assert(!std::is_abstract_v<T>,
            "A concrete class overrides all pure virtual functions; see ClassDescription::eAbstract.");
        static_assert(std::is_abstract_v<T> || std::is_default_constructible_v<T>,
            "A concrete class has a public default constructor; see ClassDescription::eAbstract.");
        return new T;
    }
}

/// The description of T once it is known: one load and one branch, where a static object of a function takes more
/// than twice that time (R12).
template<class T>
TSL_HIDDEN inline constinit std::atomic<ClassDescription const *> g_pDescription = nullptr;

// Separate from Described::GetStaticClassDesc, which the library exports: this function and its static object
// are not exported.
template<class T, class RegisteredBase, ClassDescription::EKind eKind>
[[gnu::noinline]] ClassDescription const & MakeDescription(ClassDescription::FactoryFunction fFactory)
{
    static ClassDescription const & oDescription =
        DescribeClass<T>(&RegisteredBase::GetStaticClassDesc(), eKind, fFactory, CLASS_SOURCE<T>.sFile);
    g_pDescription<T>.store(&oDescription, std::memory_order_release);
    return oDescription;
}

template<class T, class RegisteredBase, ClassDescription::EKind eKind>
ClassDescription const & GetDescription(ClassDescription::FactoryFunction fFactory)
{
    ClassDescription const * const pKnown = g_pDescription<T>.load(std::memory_order_acquire);
    return pKnown ? *pKnown : MakeDescription<T, RegisteredBase, eKind>(fFactory);
}

} // namespace TesselDetails

/// Base of a class Self that has a class description. It derives from Base, implements what Root requires
/// except for DoCopy, and inherits the constructors of Base. Self calls a constructor of Base by the name
/// Described.
///
///     class EvenLength : public tsl::Described<EvenLength, tsl::StringValidator>
///     {
///     public:
///         tsl::Result Validate(tsl::String const & s) const override;
///     };
///
/// Any thread may be the first to use the class. Its description is owned by the library and destroyed when
/// the library is unloaded. Therefore a plug-in that will be unloaded must not describe classes of its own.
///
/// @tparam eKind eAbstract if the description cannot create objects. Any other class needs a public default
///   constructor and no pure virtual functions
/// @tparam RegisteredBase the base in the description, if it is not Base
template<class Self, class Base, ClassDescription::EKind eKind = ClassDescription::eConcrete,
    class RegisteredBase = Base>
class Described : public Base
{
public:
    using Base::Base;

    /// The description of the object's class, and that of Self.
    ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    TSL_EXPORT_TEMPLATE static ClassDescription const & GetStaticClassDesc();

    /// A new object, which the caller deletes. An assertion failure for eAbstract. Not available for a class
    /// that is not derived from Root, such as a singleton.
    static Root * CreateNew() requires std::is_base_of_v<Root, Base>
    {
        // Called through the description: the failure contains CLASS_SOURCE, which for a class of the library
        // is only defined in the library.
        if constexpr (eKind == ClassDescription::eAbstract)
            return GetStaticClassDesc().GetFactoryFunction()();
        else
            return TesselDetails::MakeObject<Self, eKind>();
    }
};

namespace TesselDetails
{

/// The description of a class, by the instance of Described that it derives from.
template<class DescribedBase>
struct DescriptionOf;

template<class Self, class Base, ClassDescription::EKind eKind, class RegisteredBase>
struct DescriptionOf<Described<Self, Base, eKind, RegisteredBase>>
{
    static ClassDescription const & Get()
    {
        static_assert(std::is_base_of_v<Described<Self, Base, eKind, RegisteredBase>, Self>,
            "Self has to be the class that derives from this one.");

        ClassDescription::FactoryFunction fFactory = nullptr;
        if constexpr (std::is_base_of_v<Root, Base>)
            fFactory = &MakeObject<Self, eKind>;
        return GetDescription<Self, RegisteredBase, eKind>(fFactory);
    }
};

} // namespace TesselDetails

// Not inline: for its own classes the library specialises this in a source file and exports it, so that no
// plug-in contains it.
template<class Self, class Base, ClassDescription::EKind eKind, class RegisteredBase>
ClassDescription const & Described<Self, Base, eKind, RegisteredBase>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

} // namespace tsl
