#pragma once

#include <chrono>

#include "hostkit/image.h"

namespace app {

/// A gradual change from one image to another image of the same size. The library shows one background at a time, so
/// this class blends the two images. The number of steps is small, because each step uploads a texture.
class CrossFade {
public:
    CrossFade(hostkit::Image from, hostkit::Image to);

    /// Advances the blend by `elapsed`. Returns true if the blended image has changed.
    bool advance(std::chrono::nanoseconds elapsed);
    /// Returns the current blend.
    hostkit::Image blend() const;
    /// Returns true if the cross-fade is complete, so that only the second image is visible.
    bool isOver() const;

private:
    hostkit::Image first;
    hostkit::Image second;
    std::chrono::nanoseconds time{0};
    /// Number of the current step. The weight of the second image is proportional to this number.
    int step = 0;
};

}  // namespace app
