#include <tessel/Message.h>

#include "MessageElements.h"

#include <tessel/ValueConverter.h>
#include <tessel/ValueNull.h>
#include <tessel/ValueString.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<Message>{};
template<>
ClassDescription const & Described<Message, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

unsigned int const & Message::GetBaseType()
{
    return GetStaticClassDesc().GetClassId();
}

std::unique_ptr<AbstractNamedValueConstIterator<Value>> Message::GetConstIterator() const
{
    return std::make_unique<DummyMessageIterator>();
}

String & Message::AddAsString(String & s) const
{
    AppendElements(*this, s,
        [&](Value const & oValue)
        {
            ValueString sValue("");
            s << oValue.AddAsString(sValue).s_str();
        });
    return s;
}

DummyMessageIterator::DummyMessageIterator() : MessageConstIterator(0) {}

Value const & DummyMessageIterator::GetValue() const
{
    return ValueNull::Null();
}

char const * DummyMessageIterator::GetName() const
{
    return "";
}

} // namespace tsl
