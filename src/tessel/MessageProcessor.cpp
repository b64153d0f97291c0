#include <tessel/MessageProcessor.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<MessageProcessorConfig>{};
template<>
ClassDescription const &
Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void MessageProcessorConfig::SetMessageTypes(std::vector<unsigned int> const & vTypes)
{
    m_vTypes = vTypes;
}

template<>
constexpr ClassSource CLASS_SOURCE<MessageProcessor>{};
template<>
ClassDescription const & Described<MessageProcessor, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that the vtable and the type record of the class are only in the library.
MessageProcessor::~MessageProcessor() = default;

} // namespace tsl
