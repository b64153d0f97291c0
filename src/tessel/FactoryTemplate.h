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

/// What can happen to an entry of a factory.
class TSL_EXPORT FactoryBase
{
public:
    /// A bit mask of which a notification has one bit.
    enum Action
    {
        eBeforeRegister = 1,   ///< before the table is touched
        eAfterRegister = 2,    ///< only if the key was new
        eBeforeUnregister = 4, ///< before the table is touched
        eAfterUnregister = 8   ///< whether or not the key was there
    };
};

/// What an observer of a factory is told.
template<class Key>
class TSL_EXPORT FactoryCallBackArgs
{
public:
    FactoryCallBackArgs(Key const & oKey, FactoryBase::Action eAction) : m_oKey(oKey), m_eAction(eAction) {}
    virtual ~FactoryCallBackArgs() = default;

    Key const & GetKey() const { return m_oKey; }
    FactoryBase::Action GetAction() const { return m_eAction; }

private:
    Key m_oKey;
    FactoryBase::Action m_eAction;
};

/// An observer: it is told of what happens and of the end of who tells it.
template<class Args, class CallResult>
class TSL_EXPORT CallBack
{
public:
    virtual ~CallBack() = default;

    virtual void Invoke(Args const & oArgs, CallResult & oResult) = 0;

    /// The notifier goes away and must not be used any more.
    virtual void HandlerDestruction() const = 0;

protected:
    CallBack() = default;
    CallBack(CallBack const &) = default;
    CallBack & operator=(CallBack const &) = default;
};

/// Makes a product with a function without argument.
template<class Product, class Function>
class TSL_EXPORT ProductCreator
{
public:
    using ProductType = Product;
    using FunctionType = Function;

    Product * Create(Function const & fFunction) const { return fFunction(); }
};

/// Makes a product with a function of one argument, which the creator keeps.
template<class Product, class Function, class Argument>
class TSL_EXPORT ProductCreator1
{
public:
    using ProductType = Product;
    using FunctionType = Function;

    explicit ProductCreator1(Argument const & oArgument) : m_oArgument(oArgument) {}

    Product * Create(Function const & fFunction) const { return fFunction(m_oArgument); }

private:
    Argument m_oArgument;
};

/// A process-wide table of creation functions by key, with observers that are told of every change.
///
/// Any thread may use it. The table's lock is held while a key is searched or the table changes; an integer is
/// searched without it. Creation functions and observers run outside of it, the observers under a lock of their
/// own. An observer can veto nothing. The memory of a key that is not registered is used again for others. An integer is entered, found and removed
/// in the same time on average, whatever the number of keys; any other key in O(log n).
///
/// A copy has the same entries and calls the same observers, which ObserverNotify tells more of: the end of
/// a copy is not told to them. No other thread may use either factory while one is copied or assigned.
///
/// @tparam Key has an operator<
template<class Key, class Creator, class Mutex, class CallBackResult>
class TSL_EXPORT Factory : public Singleton<Factory<Key, Creator, Mutex, CallBackResult>>, public FactoryBase
{
public:
    using Product = typename Creator::ProductType;
    using Function = typename Creator::FunctionType;
    using Args = FactoryCallBackArgs<Key>;
    using Observer = CallBack<Args, CallBackResult>;
    using KeyType = Key;
    using CallBackResultType = CallBackResult;

    Factory(Factory const &) = default;
    Factory & operator=(Factory const &) = default;
    ~Factory() override = default;

    /// The one factory of this kind, made by the function on the first call.
    [[gnu::noinline]] static Factory & Instance(Factory * (*fCreator)())
    {
        static Factory & oRef = Singleton<Factory>::Instance(fCreator);
        return oRef;
    }

    /// Enters a function and answers whether the key was new; a key that is there keeps its function. The
    /// result is what the observers are called with. A null function is an assertion failure.
    bool Register(Key const & oKey, Function fFunction)
    {
        CallBackResult oIgnored{};
        return Register(oKey, fFunction, oIgnored);
    }
    bool Register(Key const & oKey, Function fFunction, CallBackResult & oResult);

    /// Removes the key's entry, if there is one.
    void Unregister(Key const & oKey)
    {
        CallBackResult oIgnored{};
        Unregister(oKey, oIgnored);
    }
    void Unregister(Key const & oKey, CallBackResult & oResult);

    bool IsRegistered(Key const & oKey) const { return GetFactoryFunction(oKey) != nullptr; }

    /// Deletes what CreateProduct made. Null is an assertion failure.
    virtual void DeleteProduct(Product * pProduct);

    /// A new product, which the caller owns, or null for a key that is not registered.
    virtual Product * CreateProduct(Key const & oKey, Creator const & oCreator);

    /// Observers are not owned. Null throws an Exception of code -1; IsAttached(null) is false.
    void Attach(Observer * pObserver) { m_oObservers.Attach(pObserver); }
    void Detatch(Observer * pObserver) { m_oObservers.Detatch(pObserver); }
    bool IsAttached(Observer * pObserver) const { return m_oObservers.IsAttached(pObserver); }

protected:
    Factory()
        : m_oObservers([](Observer & oObserver, Args const & oArgs, CallBackResult & oResult)
            { oObserver.Invoke(oArgs, oResult); })
    {
    }

    /// The key's function, or null.
    Function GetFactoryFunction(Key const & oKey) const { return m_oTable.Find(oKey); }

    void Notify(Key const & oKey, Action eAction, CallBackResult & oResult) const
    {
        m_oObservers.Notify(Args(oKey, eAction), oResult);
    }

private:
    friend class LibraryLoad;

    TesselDetails::FactoryTable<Key, Function, Mutex> m_oTable;

    // The last member, destroyed first: the observers are told while the table is still there.
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

/// An observer that attaches itself to factory F for its lifetime, or until the factory goes away. The
/// factory must exist already. An application derives from it and implements Invoke, and makes and destroys
/// the object only while no other thread registers or unregisters: this base is attached longer than there is
/// an Invoke to call.
template<class F>
class TSL_EXPORT SelfRegistrationFactoryCallBack
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

    void HandlerDestruction() const override { m_bAttached = false; }

protected:
    SelfRegistrationFactoryCallBack() { F::Instance(nullptr).Attach(this); }

private:
    mutable bool m_bAttached = true;
};

} // namespace tsl
