#pragma once

#include <array>

#include "hostkit/image.h"

namespace app {

/// Returns an ink colour. `hue` is in degrees: 0 is red and 60 is yellow. The smallest channel is `darkest` and the
/// largest is 1.
std::array<float, 3> lightInk(double hue, double darkest);

/// Returns a light ink with the complement of the dominant hue of an image. The ink contrasts with the image, and the
/// image remains visible through dense ink. Variation 0 is the complement. Other variations are hues close to it.
std::array<float, 3> inkAgainst(const hostkit::Image& image, int variation = 0);

}  // namespace app
