#pragma once

#include <chrono>

namespace app {

using Clock = std::chrono::steady_clock;

/// Duration of one frame of the effect in effect time: 1/60 s.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

/// Lengths that a frame may have on a machine that is too slow for 60 frames per second.
enum class FrameLength {
    /// Any length: the waves keep their speed.
    real,
    /// A multiple of 1/60 s, for recordings: events keep their time, in units of 1/60 s.
    whole,
    /// 1/60 s, for replays: each frame is drawn, and the effect runs in slow motion.
    exact
};

/// Decides when frames of the effect are due. The effect has 60 frames per second of effect time, which passes faster
/// or slower than real time by a time scale.
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
    /// Ignores the time up to the next call of `take`, which then returns one frame of 1/60 s. Input after an idle time
    /// takes effect at once, and the effect does not catch up.
    void skip();

private:
    /// Time of the last call of `take`.
    Clock::time_point last;
    /// Effect time that has passed without a frame.
    std::chrono::nanoseconds owed{0};
    bool skipped = true;
};

}  // namespace app
