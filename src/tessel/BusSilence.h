#pragma once

namespace tsl
{

/// While a thread builds one of the objects that the global bus rests on, what it reports has nowhere to
/// go: asking for the bus would ask for the object that is just being built.
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
