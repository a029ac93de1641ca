#pragma once

#include <chrono>

namespace app {

using Clock = std::chrono::steady_clock;

/// Duration of one frame of the effect in effect time: 1/60 s.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

/// Decides when frames of the effect are due. The effect has 60 frames per second of effect time, which passes faster
/// or slower than real time by a time scale.
class FrameClock {
public:
    /// Frames to run now.
    struct Due {
        /// Number of frames.
        int frames;
        /// Effect time of each frame. It is longer than 1/60 s if the machine is too slow for all frames, so that the
        /// waves keep their speed.
        std::chrono::nanoseconds elapsed;
    };

    /// Returns the frames that became due since the last call. With `exact`, each frame lasts exactly 1/60 s, and a
    /// slow machine shows slow motion. Recordings and replays need this, because they count frames.
    Due take(Clock::time_point now, float timeScale, bool exact);
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
