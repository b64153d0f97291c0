#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace tsl
{

/// Keeps one object for whoever needs one next, so that what it has allocated need not be asked for anew.
///
/// Any thread may take and give back; several at once get new objects. Nothing belongs to a thread: what
/// did would keep the library in the process for as long as the thread runs.
template<class T>
class Spare
{
public:
    Spare() = default;
    ~Spare() { delete m_pSpare.load(std::memory_order_acquire); }
    Spare(Spare const &) = delete;
    Spare & operator=(Spare const &) = delete;

    /// The object that was given back, as it was left, or else a new one.
    std::unique_ptr<T> Take()
    {
        std::unique_ptr<T> pSpare(m_pSpare.exchange(nullptr, std::memory_order_acquire));
        return pSpare ? std::move(pSpare) : std::make_unique<T>();
    }

    void GiveBack(std::unique_ptr<T> pSpare)
    {
        delete m_pSpare.exchange(pSpare.release(), std::memory_order_acq_rel);
    }

private:
    std::atomic<T *> m_pSpare{nullptr};
};

} // namespace tsl
