#pragma once

#include <chrono>

namespace player {

/// Progress of a run on stderr: a bar on a terminal, otherwise one line per tenth of the frames.
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
