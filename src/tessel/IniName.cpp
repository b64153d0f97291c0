#include "IniName.h"
#include "LastingObject.h"

#include <tessel/Result.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/StringFormator.h>
#include <tessel/StringValidator.h>

#include <algorithm>

namespace tsl
{

namespace
{

/// The characters of a name, in any locale. A table, since the parser checks every name (R07).
class NameBytes
{
public:
    constexpr NameBytes()
    {
        for (char const c :
            std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/_"))
            m_aAllowed[static_cast<unsigned char>(c)] = true;
    }

    constexpr bool Has(char c) const { return m_aAllowed[static_cast<unsigned char>(c)]; }

private:
    bool m_aAllowed[256] = {};
};

constexpr NameBytes NAME_BYTES;

class ValidatorName : public StringValidator
{
public:
    Result Validate(String const & s) const override
    {
        if (s.IsEmpty())
            return MakeResult(
                ERR::eBadData, "The name must contain at least 1 character.", Result::eCategoryFault);
        if (!IniName::IsName(s.s_str()))
            return MakeResult(
                ERR::eBadData, "The name may only contain alphanumeric characters.", Result::eCategoryFault);
        return Result();
    }
};

class FormatorName : public StringFormator
{
public:
    FormatorName() : StringFormator(eTrimLeft | eTrimRight) {}
};

} // namespace

IniName::IniName(std::string_view sText) : String(sText)
{
    Formate();
}

bool IniName::IsName(std::string_view sText)
{
    return !sText.empty()
           && std::all_of(sText.begin(), sText.end(), [](char c) { return NAME_BYTES.Has(c); });
}

StringValidator const & IniName::GetValidator() const
{
    return LastingObject<ValidatorName>();
}

StringFormator const & IniName::GetFormator() const
{
    return LastingObject<FormatorName>();
}

} // namespace tsl
