#pragma once

#include <array>

#include "hostkit/image.h"

namespace app {

/// Returns an ink colour that has the given hue in degrees: 0 is red, 60 is yellow. The smallest channel is `darkest`
/// and the largest is 1.
std::array<float, 3> lightInk(double hue, double darkest);

/// Returns a light ink that contrasts with an image. Its hue is opposite to the dominant hue of the image. The image
/// remains visible through dense ink. Variation 0 has exactly the opposite hue; other variations have hues close to it.
std::array<float, 3> inkAgainst(const hostkit::Image& image, int variation = 0);

}  // namespace app
