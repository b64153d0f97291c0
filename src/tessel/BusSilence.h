#pragma once

namespace tsl
{

/// Drops the reports of this thread until the end of the scope, while it creates an object that the global bus
/// needs. A report would use the bus, and so the object that is just being created.
class BusSilence
{
public:
    BusSilence();
    ~BusSilence();
    BusSilence(BusSilence const &) = delete;
    BusSilence & operator=(BusSilence const &) = delete;

    static bool IsOnThisThread();
};

} // namespace tsl
