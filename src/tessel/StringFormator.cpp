#include <tessel/StringFormator.h>

#include <tessel/String.h>

namespace tsl
{

ClassDescription const & StringFormator::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & StringFormator::GetStaticClassDesc()
{
    static ClassDescription const & oDescription =
        DescribeClass<StringFormator>(&Root::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * StringFormator::CreateNew()
{
    return new StringFormator;
}

void StringFormator::Format(String const & sSource, String & sTarget) const
{
    sTarget = sSource;
    if (m_iFlags & eUpper)
        sTarget.Upper();
    if (m_iFlags & eLower)
        sTarget.Lower();
    if (m_iFlags & eTrimLeft)
        sTarget.TrimLeft();
    if (m_iFlags & eTrimRight)
        sTarget.TrimRight();
}

void StringFormator::DoCopy(Root const & oSource)
{
    *this = static_cast<StringFormator const &>(oSource);
}

} // namespace tsl
