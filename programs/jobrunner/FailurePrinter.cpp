#include "FailurePrinter.h"

#include <tessel/ResultMessage.h>
#include <tessel/ValueString.h>

#include <iostream>

void FailurePrinter::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    auto const * const pFailure = dynamic_cast<tsl::ResultMessage const *>(&oMessage);
    if (!pFailure)
        return;
    tsl::Result const & oFailure = pFailure->GetResult();
    std::cerr << "jobrunner: " << oFailure.GetText().s_str() << '\n';
    for (int i = 0; i < oFailure.GetHistorySize(); ++i)
        std::cerr << "jobrunner: " << oFailure.GetHistory(i).GetText().s_str() << '\n';
    std::cerr.flush();
}
