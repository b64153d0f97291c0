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

/// Base of everything that travels over a bus, through a pipe or into the log: a small object that can be
/// copied and tells what it holds.
///
/// The type of a message is the class id of its class, so it is known at run time only and valid within
/// one run. Only classes that derive from Message directly may be dispatched.
///
/// A message is built by one thread and afterwards read by others through its const operations.
class TSL_EXPORT Message : public Described<Message, Root, ClassDescription::eAbstract>
{
public:
    Message(Message const &) = default;
    Message & operator=(Message const &) = default;

    ~Message() override = default;

    unsigned int const & GetType() const { return GetClassDesc().GetClassId(); }

    /// The type by which a processor receives every message.
    static unsigned int const & GetBaseType();

    /// A walk over the contents. The message must outlive it, and Begin has to be called first. At this
    /// level there are none.
    virtual std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const = 0;

    /// Appends name='value' of each element, separated by "; ", and returns the text.
    virtual String & AddAsString(String & s) const;

protected:
    Message() = default;
};

extern template ClassDescription const &
Described<Message, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The walk over nothing.
class TSL_EXPORT DummyMessageIterator : public MessageConstIterator
{
public:
    DummyMessageIterator();

    Value const & GetValue() const override;
    char const * GetName() const override;
};

} // namespace tsl
