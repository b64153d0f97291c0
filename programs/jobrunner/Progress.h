#pragma once

#include <tessel/PlainProcessor.h>

#include <memory>

/// Shows the progress of the jobs on the standard output: on a terminal as one line that is drawn again and again,
/// else as one line for each change.
class Progress : public tsl::PlainProcessor
{
public:
    explicit Progress(std::size_t iJobs);

    /// Unregisters from the global bus.
    ~Progress() override;

    /// Receives JobStateMessages.
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

    /// Ends the progress, so that other output begins on an empty line.
    void End();

private:
    struct Private;
    std::unique_ptr<Private> m;
};
