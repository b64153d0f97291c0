#include <tessel/FactoryTable.h>

#include "platform/Memory.h"

void tsl::TesselDetails::DiscardContent(void * pMemory, std::size_t iSize)
{
    Platform::DiscardContent(pMemory, iSize);
}
