#pragma once

#include <tessel/AbstractConstIterator.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageConstIterator.h>
#include <tessel/Root.h>
#include <tessel/String.h>
#include <tessel/Value.h>

#include <memory>

namespace tsl
{

/// The base of everything that is sent over a bus, through a pipe or into the log: a small object that can be
/// copied and lists its elements.
///
/// The type of a message is the class id of its class. It is known at run time only and valid within one run. Only
/// classes that derive directly from Message may be dispatched.
///
/// One thread fills a message in; after that any number may read it through its const operations. A message class:
///
///     class Alarm : public tsl::Described<Alarm, tsl::Message>
///     {
///         std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
///         void DoCopy(tsl::Root const & oSource) override { *this = static_cast<Alarm const &>(oSource); }
///         tsl::ValueString m_sText;
///     };
class TSL_EXPORT Message : public Described<Message, Root, ClassDescription::eAbstract>
{
public:
    Message(Message const &) = default;
    Message & operator=(Message const &) = default;

    ~Message() override = default;

    /// The class id of the message's class.
    unsigned int const & GetType() const { return GetClassDesc().GetClassId(); }

    /// The type of Message itself: a processor that registers for it receives every message.
    static unsigned int const & GetBaseType();

    /// An iterator over the elements. The message must outlive it. Call its Begin first. The iterator of this class
    /// has no elements.
    virtual std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const = 0;

    /// Appends name='value' of each element, separated by "; ", and returns s.
    virtual String & AddAsString(String & s) const;

protected:
    Message() = default;
};

template<>
TSL_EXPORT ClassDescription const &
Described<Message, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

/// An iterator without elements. It is used by one thread at a time.
class TSL_EXPORT DummyMessageIterator : public MessageConstIterator
{
public:
    DummyMessageIterator();

    /// A null value and an empty name.
    Value const & GetValue() const override;
    char const * GetName() const override;
};

} // namespace tsl
