#pragma once

#include <chrono>

namespace player {

/// Progress of a run. One line on standard error shows the progress, and each update rewrites this line. If standard
/// error is not a terminal, nothing is shown.
class Progress {
public:
    explicit Progress(int frameCount);
    /// Ends the line, so that an error message starts on a line of its own.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows that `done` frames of the run are complete.
    void show(int done);

private:
    using Clock = std::chrono::steady_clock;

    void showBar(int done, double seconds) const;

    int frameCount;
    bool onTerminal;
    Clock::time_point start = Clock::now();
    Clock::time_point lastShown{};
    bool isLineOpen = false;
};

}  // namespace player
