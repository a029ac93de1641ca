#pragma once

#include <chrono>

namespace app {

using Clock = std::chrono::steady_clock;

/// Duration of one frame of the effect: a 60th of a second of its time.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

/// Spreads the effect's frames, 60 a second of its own time, over real time.
class FrameClock {
public:
    struct Due {
        int frames;
        /// Time of each frame. Longer than a 60th of a second on a machine that is too slow for all frames, so that
        /// the water keeps its pace.
        std::chrono::nanoseconds elapsed;
    };

    /// Returns the frames that are due since the last call. With `exact`, each frame has a 60th of a second and a slow
    /// machine shows slow motion: recordings and replays count frames.
    Due take(Clock::time_point now, float timeScale, bool exact);
    /// Returns the real time until the next frame is due.
    std::chrono::nanoseconds untilNext(Clock::time_point now, float timeScale) const;
    /// Drops the time up to the next call of `take`. That call returns one frame of a 60th of a second: input that
    /// ends a rest shows at once, and no stall is made up for by a burst.
    void skip();

private:
    Clock::time_point last;
    std::chrono::nanoseconds owed{0};
    bool skipped = true;
};

}  // namespace app
