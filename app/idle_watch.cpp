#include "app/idle_watch.h"

#include <utility>

namespace app {
namespace {

/// Frames without a touch after which ink has begun to fade.
constexpr int framesBeforeFading = 60;
/// Frames between two pictures that are compared to see whether the ink still fades.
constexpr int framesBetweenPictures = 30;

}  // namespace

void IdleWatch::start() {
    mayInk = false;
    disturb();
}

void IdleWatch::noteTouch() {
    mayInk = true;
    disturb();
}

void IdleWatch::disturb() {
    quietFrames = 0;
    idle = false;
}

void IdleWatch::see(bool waterRests, const std::function<std::uint64_t()>& digest) {
    if (!waterRests) {
        disturb();
        return;
    }
    ++quietFrames;
    if (!mayInk) {
        idle = true;
    } else if (quietFrames >= framesBeforeFading && quietFrames % framesBetweenPictures == 0) {
        const std::uint64_t picture = digest();
        idle = std::exchange(lastDigest, picture) == picture;
    }
}

}  // namespace app
