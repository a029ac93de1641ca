#include "app/frame_clock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace app {
namespace {

using std::chrono::nanoseconds;

/// A display's frames come a little early or late; a frame that is this much early counts as due.
constexpr nanoseconds early = frameTime / 8;
/// Longest time between two calls that counts, unless a frame of slow motion takes longer. The water waits out the rest,
/// such as a machine's sleep.
constexpr nanoseconds longestGap = std::chrono::milliseconds(250);

nanoseconds scaled(nanoseconds time, double scale) {
    return nanoseconds(std::llround(static_cast<double>(time.count()) * scale));
}

}  // namespace

FrameClock::Due FrameClock::take(Clock::time_point now, float timeScale, bool exact) {
    const nanoseconds gap = now - std::exchange(last, now);
    if (std::exchange(skipped, false)) {
        owed = nanoseconds(0);
        return {1, frameTime};
    }
    const double scale = static_cast<double>(timeScale);
    const nanoseconds longest = std::max(longestGap, scaled(frameTime, 1.0 / scale));
    owed += scaled(std::clamp(gap, nanoseconds(0), longest), scale);
    const auto whole = static_cast<int>((owed + early) / frameTime);
    if (whole < 1) {
        return {0, frameTime};
    }
    const int max = std::max(1, static_cast<int>(std::ceil(timeScale)));
    const int frames = std::min(whole, max);
    const nanoseconds elapsed = exact || whole <= max ? frameTime : owed / frames;
    owed = whole <= max ? owed - whole * frameTime : nanoseconds(0);
    return {frames, elapsed};
}

nanoseconds FrameClock::untilNext(Clock::time_point now, float timeScale) const {
    if (skipped) {
        return nanoseconds(0);
    }
    const double scale = static_cast<double>(timeScale);
    return std::max(nanoseconds(0), scaled(frameTime - owed, 1.0 / scale) - (now - last));
}

void FrameClock::skip() {
    skipped = true;
}

}  // namespace app
