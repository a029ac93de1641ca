#include "player/window/frame_clock.h"

#include <algorithm>
#include <cmath>

#include "player/frame_time.h"

namespace player {
namespace {

using std::chrono::nanoseconds;

/// A display's frames come a little early or late; one that early is still taken.
constexpr nanoseconds early = frameTime / 8;

nanoseconds scaled(FrameClock::Clock::duration time, double scale) {
    return nanoseconds(std::llround(static_cast<double>(nanoseconds(time).count()) * scale));
}

}  // namespace

FrameClock::Due FrameClock::take(Clock::time_point now, float timeScale, bool exact) {
    owed += scaled(now - last, static_cast<double>(timeScale));
    last = now;
    const auto whole = static_cast<int>((owed + early) / frameTime);
    if (whole < 1) {
        return {0, frameTime};
    }
    const int most = std::max(1, static_cast<int>(std::ceil(timeScale)));
    const int frames = std::min(whole, most);
    const nanoseconds elapsed = exact || whole <= most ? frameTime : owed / frames;
    owed = whole <= most ? owed - whole * frameTime : nanoseconds(0);
    return {frames, elapsed};
}

nanoseconds FrameClock::untilNext(Clock::time_point now, float timeScale) const {
    const double scale = static_cast<double>(timeScale);
    return std::max(nanoseconds(0),
                    scaled(frameTime - owed, 1.0 / scale) - nanoseconds(now - last));
}

void FrameClock::skip(Clock::time_point now) {
    last = now;
    owed = nanoseconds(0);
}

}  // namespace player
