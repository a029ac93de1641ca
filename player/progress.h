#pragma once

#include <chrono>

namespace player {

/// Progress of a run: a line on the terminal of stderr that each update rewrites. Empty if stderr is no terminal.
struct Progress {
    using Clock = std::chrono::steady_clock;

    int frameCount;
    bool onTerminal;
    Clock::time_point start = Clock::now();
    Clock::time_point lastShown{};
};

Progress startProgress(int frameCount);

/// Shows that `done` frames of the run are complete.
void showProgress(Progress& progress, int done);

}  // namespace player
