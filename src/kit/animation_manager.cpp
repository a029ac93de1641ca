#include "kit/animation_manager.h"

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace velmora {

namespace {

/// Returns end - start, wrapped to a signed 32-bit number. The kit computes with 32 bits even where time_t has 64.
float difference(std::int64_t end, std::int64_t start) {
    const auto distance = static_cast<std::uint64_t>(end) - static_cast<std::uint64_t>(start);
    return static_cast<float>(static_cast<std::int32_t>(distance));
}

/// Returns the seconds since the kit's timer started. The nanosecond part of the difference may be negative.
float readClock() {
    using oru::Timer;
    clock_gettime(CLOCK_REALTIME, &Timer::mCurrentCnt);
    return difference(Timer::mCurrentCnt.tv_sec, Timer::mStartingCnt.tv_sec) +
           difference(Timer::mCurrentCnt.tv_nsec, Timer::mStartingCnt.tv_nsec) * 1e-9f;
}

}  // namespace

// During its call, an animation can add or remove animations. So the loops use indices, because iterators would become
// invalid.

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
        // Read mNow again for each call, because an animation can set the clock for the animations after it.
        animations[i]->update(mNow);
    }
}

}  // namespace velmora
