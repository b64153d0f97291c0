#include "r12_objects_tessel.h"

namespace tslbench
{

static_assert(sizeof(Record) == 96);

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> Record::GetConstIterator() const
{
    return tsl::Message::GetConstIterator();
}

void Record::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<Record const &>(oSource);
}

} // namespace tslbench
