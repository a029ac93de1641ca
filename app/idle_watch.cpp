#include "app/idle_watch.h"

#include <utility>

namespace app {
namespace {

/// Number of frames with idle water before the first digest. By then, the ink has started to fade.
constexpr int framesBeforeFading = 60;
/// Number of frames between two digests that are compared. If the digests are equal, the ink has stopped fading.
constexpr int framesBetweenDigests = 30;

}  // namespace

void IdleWatch::start() {
    inkPossible = false;
    noteChange();
}

void IdleWatch::noteTouch() {
    inkPossible = true;
    noteChange();
}

void IdleWatch::noteChange() {
    waterIdleFrames = 0;
    idle = false;
}

void IdleWatch::noteFrame(bool waterIdle, const std::function<std::uint64_t()>& digest) {
    if (!waterIdle) {
        noteChange();
        return;
    }
    ++waterIdleFrames;
    if (!inkPossible) {
        idle = true;
    } else if (waterIdleFrames >= framesBeforeFading &&
               waterIdleFrames % framesBetweenDigests == 0) {
        const std::uint64_t current = digest();
        idle = std::exchange(lastDigest, current) == current;
    }
}

}  // namespace app
