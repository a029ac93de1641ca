#include "app/frame_clock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace app {
namespace {

using std::chrono::nanoseconds;

/// Maximum time by which a frame can be early and still count as due. A tolerance is necessary because the refresh
/// intervals of displays vary slightly.
constexpr nanoseconds earlyTolerance = frameTime / 8;
/// Maximum real time between two calls of `take` that the effect covers. The effect skips the rest of a longer gap, for
/// example after the machine has slept. In slow motion, a frame can last longer than this maximum; the maximum is then
/// the duration of one frame. During a recording, `maxRecordedGap` applies, so that the recording keeps real time even
/// on a very slow machine.
constexpr nanoseconds maxGap = std::chrono::milliseconds(250);
constexpr nanoseconds maxRecordedGap = std::chrono::seconds(2);

nanoseconds scaled(nanoseconds time, double scale) {
    return nanoseconds(std::llround(static_cast<double>(time.count()) * scale));
}

/// Returns the time by which the effect advances in each of `frames` frames. `owed` is the effect time that has passed
/// but that no frame has covered yet.
nanoseconds lengthOf(FrameLength length, nanoseconds owed, int frames) {
    switch (length) {
        case FrameLength::real:
            return owed / frames;
        case FrameLength::whole:
            return (owed + earlyTolerance) / frameTime / frames * frameTime;
        case FrameLength::exact:
            break;
    }
    return frameTime;
}

}  // namespace

FrameClock::Due FrameClock::take(Clock::time_point now, float timeScale, FrameLength length) {
    const nanoseconds gap = now - std::exchange(last, now);
    if (std::exchange(skipped, false)) {
        owed = nanoseconds(0);
        return {1, frameTime};
    }
    const double scale = static_cast<double>(timeScale);
    const nanoseconds maxCounted = std::max(length == FrameLength::whole ? maxRecordedGap : maxGap,
                                            scaled(frameTime, 1.0 / scale));
    owed += scaled(std::clamp(gap, nanoseconds(0), maxCounted), scale);
    const auto framesOwed = static_cast<int>((owed + earlyTolerance) / frameTime);
    if (framesOwed < 1) {
        return {0, frameTime};
    }
    const int maxFrames = std::max(1, static_cast<int>(std::ceil(timeScale)));
    const int frames = std::min(framesOwed, maxFrames);
    const nanoseconds elapsed =
        framesOwed <= maxFrames ? frameTime : lengthOf(length, owed, frames);
    const bool keepsRest = framesOwed <= maxFrames || length == FrameLength::whole;
    owed = keepsRest ? owed - frames * elapsed : nanoseconds(0);
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
