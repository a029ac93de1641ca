#include "kit/animation_manager.h"

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace velmora {

namespace {

/// The difference as a 32-bit signed number, also where the platform counts in 64 bits; wraps.
float difference(std::int64_t end, std::int64_t start) {
    const auto distance = static_cast<std::uint64_t>(end) - static_cast<std::uint64_t>(start);
    return static_cast<float>(static_cast<std::int32_t>(distance));
}

/// Seconds since the kit's timer started. The nanoseconds may be the smaller ones: their part is
/// then negative.
float readClock() {
    using oru::Timer;
    clock_gettime(CLOCK_REALTIME, &Timer::mCurrentCnt);
    return difference(Timer::mCurrentCnt.tv_sec, Timer::mStartingCnt.tv_sec) +
           difference(Timer::mCurrentCnt.tv_nsec, Timer::mStartingCnt.tv_nsec) * 1e-9f;
}

}  // namespace

// An animation may join the list or leave it while it is called: no loop holds an iterator over a call.

int AnimationManager::anyAnimationResult() {
    for (std::size_t i = 0; i < animations.size(); ++i) {
        if (const int result = animations[i]->query(); result != 0) {
            return result;
        }
    }
    return 0;
}

void AnimationManager::notifyAnimations() {
    for (std::size_t i = 0; i < animations.size(); ++i) {
        animations[i]->notify();
    }
}

void AnimationManager::update() {
    mNow = oru::Timer::mIsPaused == 0 ? readClock() : oru::Timer::mPausedTime;
    for (std::size_t i = 0; i < animations.size(); ++i) {
        // Read again each time: an animation may set the clock for those after it.
        animations[i]->update(mNow);
    }
}

}  // namespace velmora
