#pragma once

#include <chrono>

namespace player {

/// Progress of a run. One line on standard error shows the progress, and each update rewrites this line. If standard
/// error is not a terminal, nothing is shown.
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
