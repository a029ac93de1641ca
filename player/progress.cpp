#include "player/progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr int barWidth = 40;
constexpr auto barInterval = 100ms;

void showBar(const Progress& progress, int done, double framesPerSecond) {
    const int filled = static_cast<int>(static_cast<long>(barWidth) * done / progress.frameCount);
    const std::string bar(static_cast<std::size_t>(filled), '#');
    std::fprintf(stderr, "\r[%-*s] %d/%d  %.1f frames/s%s", barWidth, bar.c_str(), done,
                 progress.frameCount, framesPerSecond, done == progress.frameCount ? "\n" : " ");
    std::fflush(stderr);
}

bool completesTenth(int done, int frameCount) {
    return done * 10L / frameCount != (done - 1) * 10L / frameCount;
}

}  // namespace

Progress startProgress(int frameCount) {
    return {frameCount, isatty(STDERR_FILENO) == 1};
}

void showProgress(Progress& progress, int done) {
    const Progress::Clock::time_point now = Progress::Clock::now();
    const double seconds = std::chrono::duration<double>(now - progress.start).count();
    const double framesPerSecond = seconds > 0.0 ? done / seconds : 0.0;
    if (!progress.onTerminal) {
        if (completesTenth(done, progress.frameCount)) {
            std::fprintf(stderr, "frame %d of %d, %.1f frames/s\n", done, progress.frameCount,
                         framesPerSecond);
        }
    } else if (done == progress.frameCount || now - progress.lastShown >= barInterval) {
        showBar(progress, done, framesPerSecond);
        progress.lastShown = now;
    }
}

}  // namespace player
