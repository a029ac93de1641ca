#pragma once

#include <array>

#include "hostkit/picture.h"

namespace player {

/// An ink of the hue, in degrees from red over yellow, whose channels reach from `darkest` to 1.
std::array<float, 3> lightInk(double hue, double darkest);

/// A light ink in the complement of the picture's dominant colour: it stands out, and where it is
/// thick the picture still shows through. Each `variation` has another hue around the complement,
/// the first, 0, is the complement itself.
std::array<float, 3> inkAgainst(const hostkit::Picture& picture, int variation = 0);

}  // namespace player
