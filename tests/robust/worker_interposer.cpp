#include "tests/robust/worker_interposer.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

#include "tests/host/loaded_library.h"

namespace robust {

namespace {

template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::mutex lock;
std::condition_variable changed;
bool held = false, released = false;  // guarded by `lock`

// State of the worker thread.
thread_local int jittersLeft = 0;
thread_local Moment heldAt = Moment::none;

void reach(Moment moment) {
    if (moment != heldAt) {
        return;
    }
    std::unique_lock guard(lock);
    held = true;
    changed.notify_all();
    changed.wait(guard, [] { return released; });
    held = released = false;
}

struct Worker {
    void* (*entry)(void*);
    void* argument;
    Moment moment;
};

void* runWorker(void* started) {
    const Worker worker = *static_cast<Worker*>(started);
    delete static_cast<Worker*>(started);
    jittersLeft = 2;
    heldAt = worker.moment;
    reach(Moment::start);
    void* const result = worker.entry(worker.argument);
    reach(Moment::end);
    return result;
}

}  // namespace

std::atomic<Moment> nextHold = Moment::none;
std::function<void()> whileJoining;
std::atomic<int> threadsToRefuse = 0, threadsStarted = 0, threadsJoined = 0;

void waitUntilHeld() {
    std::unique_lock guard(lock);
    changed.wait(guard, [] { return held; });
}

bool isHeld() {
    const std::lock_guard guard(lock);
    return held;
}

void release() {
    const std::lock_guard guard(lock);
    released = held;
    changed.notify_all();
}

}  // namespace robust

using namespace robust;

// The library's calls use the functions below instead of those of the C library or of a sanitizer.
#pragma GCC visibility push(default)
extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*),
                   void* argument) {
    static auto* const real = next<decltype(pthread_create)>("pthread_create");
    if (!testhost::isInLibrary(__builtin_return_address(0))) {
        return real(thread, attributes, entry, argument);
    }
    if (threadsToRefuse > 0) {
        --threadsToRefuse;
        // A failed pthread_create can leave any value in `thread`. This function stores an invalid value, which the
        // library must not use.
        constexpr auto invalid = static_cast<pthread_t>(-1);
        *thread = invalid;
        return EAGAIN;
    }
    ++threadsStarted;
    const Moment moment = nextHold.exchange(Moment::none);
    auto worker = std::make_unique<Worker>(Worker{entry, argument, moment});
    return real(thread, attributes, runWorker, worker.release());
}

int pthread_join(pthread_t thread, void** result) {
    static auto* const real = next<decltype(pthread_join)>("pthread_join");
    if (testhost::isInLibrary(__builtin_return_address(0))) {
        ++threadsJoined;
        if (const auto act = std::exchange(whileJoining, nullptr)) {
            act();
        }
        release();
    }
    return real(thread, result);
}

int rand() {
    static auto* const real = next<decltype(rand)>("rand");
    if (jittersLeft > 0) {
        reach(jittersLeft == 2 ? Moment::firstJitter : Moment::secondJitter);
        --jittersLeft;
    }
    return real();
}
}
#pragma GCC visibility pop
