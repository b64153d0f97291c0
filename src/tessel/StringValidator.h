#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/Root.h>

namespace tsl
{

class String;

/// Checks the length of a text, in bytes.
///
///     StringValidator const oName(1, 20);
///     Result const oResult = oName.Validate(sName); // code 4 for the empty text
///
/// A text class returns its validator from GetValidator; a derived validator has rules of its own. An object
/// is immutable, apart from assignment, so any thread may use it.
class TSL_EXPORT StringValidator : public Described<StringValidator, Root>
{
public:
    /// Accepts every text.
    StringValidator() = default;

    /// Accepts texts of at least iMinimum and, if it is given, at most iMaximum bytes.
    explicit StringValidator(unsigned int iMinimum) : m_iMinimum(iMinimum) {}
    StringValidator(unsigned int iMinimum, unsigned int iMaximum)
        : m_iMinimum(iMinimum), m_bMaximum(true), m_iMaximum(iMaximum)
    {
    }
    StringValidator(StringValidator const & oSource) = default;
    StringValidator & operator=(StringValidator const & oSource) = default;

    ~StringValidator() override = default;

    /// A success, or a failure of code 4 for a text that is too short or too long.
    [[nodiscard]] virtual Result Validate(String const & s) const;

protected:
    void DoCopy(Root const & oSource) override;

private:
    unsigned int m_iMinimum = 0;
    bool m_bMaximum = false;
    unsigned int m_iMaximum = 0;
};

template<>
TSL_EXPORT ClassDescription const & Described<StringValidator, Root>::GetStaticClassDesc();

} // namespace tsl
