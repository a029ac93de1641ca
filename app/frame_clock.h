#pragma once

#include <chrono>

namespace app {

using Clock = std::chrono::steady_clock;

/// Duration of one frame in effect time: 1/60 s.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

/// Rule for the duration of a frame on a machine that cannot draw 60 frames per second.
enum class FrameLength {
    /// Any duration. Waves keep their speed in real time.
    real,
    /// Frame time rounded to a multiple of 1/60 s, for recordings. Recorded events then happen at whole frame numbers
    /// and keep their time.
    whole,
    /// Always 1/60 s, for replays. Every frame is drawn, so the effect runs in slow motion.
    exact
};

/// Decides when the next frames of the effect are due. The effect has 60 frames per second of effect time. Effect time
/// runs faster or slower than real time by the factor `timeScale`.
class FrameClock {
public:
    /// Frames to run now.
    struct Due {
        /// Number of frames.
        int frames;
        /// Effect time of each frame. See `FrameLength`.
        std::chrono::nanoseconds elapsed;
    };

    /// Returns the frames that became due since the last call.
    Due take(Clock::time_point now, float timeScale, FrameLength length);
    /// Returns the real time until the next frame is due, at least 0.
    std::chrono::nanoseconds untilNext(Clock::time_point now, float timeScale) const;
    /// Ignores the time until the next call of `take`, which then returns one frame of 1/60 s. So input after an idle
    /// time takes effect at once, and the effect does not try to catch up.
    void skip();

private:
    /// Time of the last call of `take`.
    Clock::time_point last;
    /// Effect time that has passed but is not covered by a frame yet.
    std::chrono::nanoseconds owed{0};
    bool skipped = true;
};

}  // namespace app
