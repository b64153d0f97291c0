#include <tessel/MessageProcessor.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<MessageProcessorConfig>{};
template ClassDescription const &
Described<MessageProcessorConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc();

void MessageProcessorConfig::SetMessageTypes(std::vector<unsigned int> const & vTypes)
{
    m_vTypes = vTypes;
}

template<>
constexpr ClassSource CLASS_SOURCE<MessageProcessor>{};
template ClassDescription const &
Described<MessageProcessor, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

// Not inline, so that the table and the type record of the class are in the library alone.
MessageProcessor::~MessageProcessor() = default;

} // namespace tsl
