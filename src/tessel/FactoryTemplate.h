#pragma once

#include <tessel/Assertion.h>
#include <tessel/FactoryTable.h>
#include <tessel/ObserverNotifyTemplate.h>
#include <tessel/SingletonTemplate.h>
#include <tessel/String.h>
#include <tessel/TypeName.h>

#include <typeinfo>

namespace tsl
{

/// The base of all factories: what can happen to an entry.
class TSL_EXPORT FactoryBase
{
public:
    /// Each notification has one of these bits.
    enum Action
    {
        eBeforeRegister = 1,   ///< before the table changes
        eAfterRegister = 2,    ///< only if the key was new
        eBeforeUnregister = 4, ///< before the table changes
        eAfterUnregister = 8   ///< whether or not the key was there
    };
};

/// The arguments of an observer's call: the key, which is a copy, and what happens to it.
template<class Key>
class TSL_EXPORT_TEMPLATE FactoryCallBackArgs
{
public:
    /// With a copy of the key.
    FactoryCallBackArgs(Key const & oKey, FactoryBase::Action eAction) : m_oKey(oKey), m_eAction(eAction) {}
    virtual ~FactoryCallBackArgs() = default;

    /// The key that is registered or unregistered. The reference holds as long as this object.
    Key const & GetKey() const { return m_oKey; }

    /// What happens to it: one of the bits.
    FactoryBase::Action GetAction() const { return m_eAction; }

private:
    Key m_oKey;
    FactoryBase::Action m_eAction;
};

/// The interface of an observer. The notifier does not own it and calls it on the thread that made the change.
///
/// @tparam Args what happened
/// @tparam CallResult one object that all observers of a notification share
template<class Args, class CallResult>
class TSL_EXPORT_TEMPLATE CallBack
{
public:
    virtual ~CallBack() = default;

    /// Something has happened. What it throws reaches the caller who made the change, and no further observer is
    /// called.
    virtual void Invoke(Args const & oArgs, CallResult & oResult) = 0;

    /// The notifier is being destroyed and must not be used any more. Must not throw.
    virtual void HandlerDestruction() const = 0;

protected:
    CallBack() = default;
    CallBack(CallBack const &) = default;
    CallBack & operator=(CallBack const &) = default;
};

/// Makes a product by calling a creation function without arguments. The caller owns the product.
template<class Product, class Function>
class TSL_EXPORT_TEMPLATE ProductCreator
{
public:
    /// Parameters of the template.
    using ProductType = Product;
    using FunctionType = Function;

    /// A new product, which the caller deletes.
    Product * Create(Function const & fFunction) const { return fFunction(); }
};

/// Makes a product by calling a creation function with one argument, of which the creator keeps a copy. The caller
/// owns the product.
template<class Product, class Function, class Argument>
class TSL_EXPORT_TEMPLATE ProductCreator1
{
public:
    /// Parameters of the template.
    using ProductType = Product;
    using FunctionType = Function;

    /// With a copy of the argument.
    explicit ProductCreator1(Argument const & oArgument) : m_oArgument(oArgument) {}

    /// A new product, which the caller deletes.
    Product * Create(Function const & fFunction) const { return fFunction(m_oArgument); }

private:
    Argument m_oArgument;
};

/// A table of creation functions by key, one for the whole process, with observers that are notified of every
/// change. Its best known kinds are TaskFactory and MessageProcessorFactory:
///
///     tsl::TaskFactory & oFactory = tsl::TaskFactory::Instance();
///     oFactory.Register(eRing, [](tsl::TaskProcessor * pParent) -> tsl::Task * { return new Ring(pParent); });
///     tsl::Task * const pTask = oFactory.CreateProduct(eRing, tsl::TaskCreator(pMachine));
///
/// Any thread may use it. Lookups and changes hold the table's lock; the lookup of an integer key takes no lock.
/// Creation functions and observers are called without that lock, observers under a lock of their own. An observer
/// cannot prevent a change. The memory of an unregistered key is used again for other keys. Adding, lookup and
/// removal take constant time on average for an integer key, O(log n) for any other.
///
/// A copy has the same entries and calls the same observers, but does not call them when it is destroyed; see
/// ObserverNotify. No other thread may use either factory while one is copied or assigned.
///
/// @tparam Key has an operator<
/// @tparam Creator is a ProductCreator or a ProductCreator1
/// @tparam Mutex as for ObserverNotify
/// @tparam CallBackResult what the observers share
template<class Key, class Creator, class Mutex, class CallBackResult>
class TSL_EXPORT_TEMPLATE Factory : public Singleton<Factory<Key, Creator, Mutex, CallBackResult>>,
                                    public FactoryBase
{
public:
    /// What the factory makes and how, and what its observers get.
    using Product = typename Creator::ProductType;
    using Function = typename Creator::FunctionType;
    using Args = FactoryCallBackArgs<Key>;
    using Observer = CallBack<Args, CallBackResult>;
    using KeyType = Key;
    using CallBackResultType = CallBackResult;

    Factory(Factory const &) = default;
    Factory & operator=(Factory const &) = default;
    ~Factory() override = default;

    /// The one factory of this kind. The first call makes it with the function, which may be null in later calls.
    [[gnu::noinline]] static Factory & Instance(Factory * (*fCreator)())
    {
        static Factory & oRef = Singleton<Factory>::Instance(fCreator);
        return oRef;
    }

    /// Adds a function and returns whether the key was new; a registered key keeps its function. The observers are
    /// called with oResult. A null function is an assertion failure.
    bool Register(Key const & oKey, Function fFunction)
    {
        CallBackResult oIgnored{};
        return Register(oKey, fFunction, oIgnored);
    }

    /// The same with a result for the observers.
    bool Register(Key const & oKey, Function fFunction, CallBackResult & oResult);

    /// Removes the key's entry if there is one. The observers are called in both cases.
    void Unregister(Key const & oKey)
    {
        CallBackResult oIgnored{};
        Unregister(oKey, oIgnored);
    }

    /// The same with a result for the observers.
    void Unregister(Key const & oKey, CallBackResult & oResult);

    /// Another thread may change the answer before the caller uses it.
    bool IsRegistered(Key const & oKey) const { return GetFactoryFunction(oKey) != nullptr; }

    /// Deletes a product of CreateProduct. Null is an assertion failure.
    virtual void DeleteProduct(Product * pProduct);

    /// A new product, which the caller owns, or null for a key that is not registered. What the creation function
    /// throws reaches the caller.
    virtual Product * CreateProduct(Key const & oKey, Creator const & oCreator);

    /// Observers are not owned: each must outlive the factory or be detached. A null pointer throws an Exception of
    /// code -1; IsAttached(null) is false.
    void Attach(Observer * pObserver) { m_oObservers.Attach(pObserver); }
    void Detatch(Observer * pObserver) { m_oObservers.Detatch(pObserver); }
    bool IsAttached(Observer * pObserver) const { return m_oObservers.IsAttached(pObserver); }

protected:
    Factory()
        : m_oObservers([](Observer & oObserver, Args const & oArgs, CallBackResult & oResult)
            { oObserver.Invoke(oArgs, oResult); })
    {
    }

    /// Returns the key's function, or null.
    Function GetFactoryFunction(Key const & oKey) const { return m_oTable.Find(oKey); }

    /// Calls the observers.
    void Notify(Key const & oKey, Action eAction, CallBackResult & oResult) const
    {
        m_oObservers.Notify(Args(oKey, eAction), oResult);
    }

private:
    friend class LibraryLoad;

    TesselDetails::FactoryTable<Key, Function, Mutex> m_oTable;

    // The last member, so destroyed first: the observers are notified while the table still exists.
    ObserverNotify<Observer, Args, CallBackResult> m_oObservers;
};

template<class Key, class Creator, class Mutex, class CallBackResult>
bool Factory<Key, Creator, Mutex, CallBackResult>::Register(
    Key const & oKey, Function fFunction, CallBackResult & oResult)
{
    if (!fFunction)
        XAssertionFailed("pFunc", String(GetTypeName(typeid(*this))) + "::Register(" + GetTypeName<Key>()
                                      + "," + GetTypeName<Function>() + ") : pFunc is NULL!");

    Notify(oKey, FactoryBase::eBeforeRegister, oResult);
    bool const bNew = m_oTable.Insert(oKey, fFunction);
    if (bNew)
        Notify(oKey, FactoryBase::eAfterRegister, oResult);
    return bNew;
}

template<class Key, class Creator, class Mutex, class CallBackResult>
void Factory<Key, Creator, Mutex, CallBackResult>::Unregister(Key const & oKey, CallBackResult & oResult)
{
    Notify(oKey, FactoryBase::eBeforeUnregister, oResult);
    m_oTable.Erase(oKey);
    Notify(oKey, FactoryBase::eAfterUnregister, oResult);
}

template<class Key, class Creator, class Mutex, class CallBackResult>
void Factory<Key, Creator, Mutex, CallBackResult>::DeleteProduct(Product * pProduct)
{
    if (!pProduct)
        XAssertionFailed("pProduct", String(GetTypeName(typeid(*this))) + "::DeleteInstance("
                                         + GetTypeName<Product>() + ") : pProduct is NULL!");
    delete pProduct;
}

template<class Key, class Creator, class Mutex, class CallBackResult>
auto Factory<Key, Creator, Mutex, CallBackResult>::CreateProduct(Key const & oKey, Creator const & oCreator)
    -> Product *
{
    Function const fFunction = GetFactoryFunction(oKey);
    return fFunction ? oCreator.Create(fFunction) : nullptr;
}

/// An observer that attaches itself to factory F for its lifetime, or until the factory is destroyed. The factory
/// must exist already. A program derives from it and implements Invoke.
///
/// Make and destroy it only while no other thread registers or unregisters: this base is attached before the
/// derived object is complete and is still attached after its destructor, when there is no Invoke to call.
template<class F>
class TSL_EXPORT_TEMPLATE SelfRegistrationFactoryCallBack
    : public CallBack<FactoryCallBackArgs<typename F::KeyType>, typename F::CallBackResultType>
{
public:
    ~SelfRegistrationFactoryCallBack() override
    {
        if (m_bAttached)
            F::Instance(nullptr).Detatch(this);
    }

    SelfRegistrationFactoryCallBack(SelfRegistrationFactoryCallBack const &) = delete;
    SelfRegistrationFactoryCallBack & operator=(SelfRegistrationFactoryCallBack const &) = delete;

    /// The factory is being destroyed: the destructor will not detach.
    void HandlerDestruction() const override { m_bAttached = false; }

protected:
    SelfRegistrationFactoryCallBack() { F::Instance(nullptr).Attach(this); }

private:
    mutable bool m_bAttached = true;
};

} // namespace tsl
