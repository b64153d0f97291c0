#pragma once

#include <tessel/Assertion.h>
#include <tessel/ClassRepository.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

#include <atomic>
#include <type_traits>

namespace tsl
{

/// A place in the source.
struct ClassSource
{
    constexpr ClassSource(char const * sTheFile = __builtin_FILE(), int iTheLine = __builtin_LINE())
        : sFile(sTheFile), iLine(iTheLine)
    {
    }

    char const * sFile;
    int iLine;
};

/// The place that the description of a described class T names. It is empty unless it is given after the class, in
/// the same file:
///
///     template<>
///     inline constexpr tsl::ClassSource tsl::CLASS_SOURCE<Greeting>{};
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

// Not a part of GetStaticClassDesc, since the library exports that one and not the static object.
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

/// Makes class Self, which derives from it, a class with a description: it gives Self what Root asks for but DoCopy,
/// and the constructors of Base, which is what Self would derive from otherwise. The members of Base are reached
/// through it, and Self calls a constructor of Base by the name Described.
///
///     class Greeting : public tsl::Described<Greeting, tsl::Message>
///     {
///     public:
///         Greeting() = default;
///         ...
///     };
///
/// Any thread may be the first to use the class. Its description belongs to the library and lasts until that is
/// unloaded. Therefore a plug-in that is to be unloaded describes no classes of its own.
///
/// @tparam eKind eAbstract for a class of which the description makes no objects. Any other class has a public
///         default constructor, and no pure virtual function
/// @tparam RegisteredBase the base in the description, if it is not Base
template<class Self, class Base, ClassDescription::EKind eKind = ClassDescription::eConcrete,
    class RegisteredBase = Base>
class Described : public Base
{
public:
    using Base::Base;

    ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    TSL_EXPORT static ClassDescription const & GetStaticClassDesc();

    /// A new object, which the caller deletes. An abstract class fails an assertion. A class that is no Root, such as
    /// a singleton, has no such function.
    static Root * CreateNew() requires std::is_base_of_v<Root, Base>
    {
        // The failure names the source of the class, which of a class of the library only the library knows.
        if constexpr (eKind == ClassDescription::eAbstract)
            return GetStaticClassDesc().GetFactoryFunction()();
        else
            return TesselDetails::MakeObject<Self, eKind>();
    }
};

// Not inline: for a class of the library it is a part of the library, which declares it extern, and is never a part
// of a plug-in.
template<class Self, class Base, ClassDescription::EKind eKind, class RegisteredBase>
ClassDescription const & Described<Self, Base, eKind, RegisteredBase>::GetStaticClassDesc()
{
    static_assert(std::is_base_of_v<Described, Self>, "Self has to be the class that derives from this one.");

    ClassDescription::FactoryFunction fFactory = nullptr;
    if constexpr (std::is_base_of_v<Root, Base>)
        fFactory = &TesselDetails::MakeObject<Self, eKind>;
    return TesselDetails::GetDescription<Self, RegisteredBase, eKind>(fFactory);
}

} // namespace tsl
