#pragma once

#include <chrono>

namespace app {

using Clock = std::chrono::steady_clock;

/// Time by which the effect normally advances in one frame: 1/60 s.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

/// Rule for the time by which the effect advances in one frame, on a machine that cannot draw 60 frames per second.
enum class FrameLength {
    /// The full time that has passed, so that waves keep their speed in real time.
    real,
    /// The time that has passed, rounded to a multiple of 1/60 s, for recordings. Each recorded event then has a whole
    /// frame number, and the recording keeps real time.
    whole,
    /// Always 1/60 s, for replays. A replay draws every frame, so it runs in slow motion on a slow machine.
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
        /// Time by which the effect advances in each frame. `FrameLength` has the rules for this time.
        std::chrono::nanoseconds elapsed;
    };

    /// Returns the frames that became due since the last call.
    Due take(Clock::time_point now, float timeScale, FrameLength length);
    /// Returns the real time until the next frame is due, at least 0.
    std::chrono::nanoseconds untilNext(Clock::time_point now, float timeScale) const;
    /// Ignores the time until the next call of `take`, which then returns one frame of 1/60 s. Input after an idle time
    /// therefore takes effect at once, and the effect does not try to catch up.
    void skip();

private:
    /// Time of the last call of `take`.
    Clock::time_point last;
    /// Effect time that has passed but that no frame has covered yet.
    std::chrono::nanoseconds owed{0};
    bool skipped = true;
};

}  // namespace app
