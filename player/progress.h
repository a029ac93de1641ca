#pragma once

#include <chrono>

namespace player {

/// Tells on stderr how far a run has come: a bar on a terminal, a line for each tenth elsewhere.
struct Progress {
    using Clock = std::chrono::steady_clock;

    int frameCount;
    bool onTerminal;
    Clock::time_point start = Clock::now();
    Clock::time_point lastShown{};
};

Progress startProgress(int frameCount);

/// `done` frames of the run are complete.
void showProgress(Progress& progress, int done);

}  // namespace player
