#pragma once

#include <array>

#include "hostkit/picture.h"

namespace app {

/// Returns an ink of the hue, in degrees from red over yellow, whose channels reach from `darkest` to 1.
std::array<float, 3> lightInk(double hue, double darkest);

/// Returns a light ink in the complement of the picture's dominant colour. It stands out, and where it is thick the
/// picture still shows through. Variation 0 is the complement itself; each other variation has another hue near it.
std::array<float, 3> inkAgainst(const hostkit::Picture& picture, int variation = 0);

}  // namespace app
