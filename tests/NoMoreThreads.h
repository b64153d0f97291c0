#pragma once

#include <cstddef>

#include <pthread.h>

namespace tsltest
{

/// While it lives, no thread can be started: none gets a stack.
class NoMoreThreads
{
public:
    NoMoreThreads()
    {
        ::pthread_getattr_default_np(&m_oFormer);
        pthread_attr_t oHuge = m_oFormer;
        ::pthread_attr_setstacksize(&oHuge, std::size_t{1} << 50);
        ::pthread_setattr_default_np(&oHuge);
    }
    ~NoMoreThreads() { ::pthread_setattr_default_np(&m_oFormer); }
    NoMoreThreads(NoMoreThreads const &) = delete;
    NoMoreThreads & operator=(NoMoreThreads const &) = delete;

private:
    pthread_attr_t m_oFormer;
};

} // namespace tsltest
