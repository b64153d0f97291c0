#include "platform/Memory.h"

namespace tsl::Platform
{

// Nothing here promises that memory which is taken back reads as 0.
void DiscardContent(void *, std::size_t) {}

} // namespace tsl::Platform
