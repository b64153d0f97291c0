#pragma once

#include <tessel/PlainProcessor.h>

#include <memory>

/// Shows on the standard output how the jobs get on: one line that is drawn again and again on a terminal,
/// and a line for each change where it is none.
class Progress : public tsl::PlainProcessor
{
public:
    explicit Progress(std::size_t iJobs);

    /// Leaves the global bus.
    ~Progress() override;

    /// Takes JobStateMessages.
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

    /// Nothing more comes: what follows begins on an empty line.
    void End();

private:
    struct Private;
    std::unique_ptr<Private> m;
};
