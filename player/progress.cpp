#include "player/progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace player {
namespace {

using namespace std::chrono_literals;

/// Width of the bar in characters.
constexpr int barWidth = 24;
constexpr auto barInterval = 100ms;
/// Number of complete frames from which the remaining time is shown. The speed of fewer frames is too uncertain for a
/// forecast.
constexpr int framesBeforeForecast = 30;

/// Returns the remaining time of a run, such as "1:05 left". Returns an empty text at the start and at the end of the
/// run.
std::string remainingTime(double seconds, int done, int frameCount) {
    if (done < framesBeforeForecast || done == frameCount) {
        return "";
    }
    const auto left = std::lround(seconds / done * (frameCount - done));
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld left", left / 60, left % 60);
    return text;
}

}  // namespace

Progress::Progress(int frames) : frameCount(frames), onTerminal(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (isLineOpen) {
        std::fputs("\n", stderr);
    }
}

void Progress::show(int done) {
    const Clock::time_point now = Clock::now();
    const bool isDue = done == frameCount || now - lastShown >= barInterval;
    if (onTerminal && isDue) {
        showBar(done, std::chrono::duration<double>(now - start).count());
        lastShown = now;
        isLineOpen = true;
    }
}

void Progress::showBar(int done, double seconds) const {
    const int filled = static_cast<int>(static_cast<long>(barWidth) * done / frameCount);
    const std::string bar(static_cast<std::size_t>(filled), '#');
    // The escape sequence at the end erases the rest of a longer line.
    std::fprintf(stderr, "\r[%-*s] %d/%d  %.1f frames/s  %s\x1b[K", barWidth, bar.c_str(), done,
                 frameCount, seconds > 0.0 ? done / seconds : 0.0,
                 remainingTime(seconds, done, frameCount).c_str());
    std::fflush(stderr);
}

}  // namespace player
