#include <tessel/MessageProcessor.h>

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & MessageProcessorConfig::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageProcessorConfig::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<MessageProcessorConfig>(
        &Configuration::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * MessageProcessorConfig::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

void MessageProcessorConfig::SetMessageTypes(std::vector<unsigned int> const & vTypes)
{
    m_vTypes = vTypes;
}

ClassDescription const & MessageProcessor::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageProcessor::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<MessageProcessor>(&Root::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * MessageProcessor::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

} // namespace tsl
