#pragma once

#include <chrono>

namespace player {

/// Spreads the effect's frames, 60 a second of its own time, over real time.
class FrameClock {
public:
    using Clock = std::chrono::steady_clock;

    struct Due {
        int frames;
        /// For each of them. Longer than a 60th of a second where the machine is too slow for all,
        /// so that the water keeps its pace.
        std::chrono::nanoseconds elapsed;
    };

    /// What is due since the last call. `exact` gives every frame a 60th of a second, and slow
    /// motion on a slow machine: what is recorded or replayed counts frames.
    Due take(Clock::time_point now, float timeScale, bool exact);
    /// Real time until the next frame is due.
    std::chrono::nanoseconds untilNext(Clock::time_point now, float timeScale) const;
    /// Lets the time since the last call pass without frames.
    void skip(Clock::time_point now);

private:
    Clock::time_point last = Clock::now();
    std::chrono::nanoseconds owed{0};
};

}  // namespace player
