#include "testing/FailingThreads.h"

#include <cerrno>

#include <dlfcn.h>
#include <pthread.h>

namespace mirel::testing {

FailureCountdown& failingThreads()
{
    static FailureCountdown threads;
    return threads;
}

} // namespace mirel::testing

// Stands before the function of the system, also for the libraries that start threads.
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) noexcept
{
    static const auto start = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return mirel::testing::failingThreads().failsNow() ? EAGAIN : start(thread, attributes, run, argument);
}
