#pragma once

#include <chrono>

#include "hostkit/image.h"

namespace app {

/// A gradual change from one image to another image of the same size. The library shows one background at a time, so
/// the images are blended here. The blend changes in few steps, because each step uploads a texture.
class CrossFade {
public:
    CrossFade(hostkit::Image from, hostkit::Image to);

    /// Advances by `elapsed`. Returns true if the blend has changed.
    bool advance(std::chrono::nanoseconds elapsed);
    /// Returns the current blend.
    hostkit::Image blend() const;
    /// Returns true if the blend is the second image.
    bool isOver() const;

private:
    hostkit::Image first;
    hostkit::Image second;
    std::chrono::nanoseconds time{0};
    /// Number of the current step. It is also the weight of the second image.
    int step = 0;
};

}  // namespace app
