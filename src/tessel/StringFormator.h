#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>

namespace tsl
{

class String;

/// Puts a text into its normal form, as its flags say.
///
///     tsl::String sName("  Ann ");
///     tsl::StringFormator(tsl::StringFormator::eLower).Format(sName, sName);
///
/// Threads: any, since nothing changes it. Ownership: it keeps no text; String::GetFormator returns a
/// reference to one that the library, or the derived class of the text, owns.
class TSL_EXPORT StringFormator : public Described<StringFormator, Root>
{
public:
    /// Can be combined; they are applied in this order.
    enum
    {
        eUpper = 1,
        eLower = 2,
        eTrimLeft = 4,
        eTrimRight = 8
    };

    /// A combination of the flags above; 0 changes nothing.
    StringFormator(int iFlags = 0) : m_iFlags(iFlags) {}
    StringFormator(StringFormator const & oSource) = default;
    StringFormator & operator=(StringFormator const & oSource) = default;

    ~StringFormator() override = default;

    /// Makes the normal form of the source in the target; both may be the same text.
    virtual void Format(String const & sSource, String & sTarget) const;

protected:
    void DoCopy(Root const & oSource) override;

private:
    int m_iFlags;
};

template<>
TSL_EXPORT ClassDescription const & Described<StringFormator, Root>::GetStaticClassDesc();

} // namespace tsl
