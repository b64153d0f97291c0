#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>

#include <array>

namespace tslbench
{

/// A message of 96 bytes, and three classes that derive from it.
class Record : public tsl::Described<Record, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    // All numbers are written out, since g++ uses a slow string instruction for a rest of zeros. No plain array,
    // which g++ assigns word by word.
    [[maybe_unused]] std::array<long, 11> m_aValues = {1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0};
};

class Record1 : public tsl::Described<Record1, Record>
{
};

class Record2 : public tsl::Described<Record2, Record1>
{
};

class Record3 : public tsl::Described<Record3, Record2>
{
};

} // namespace tslbench
