#pragma once

#include "hostkit/effect_host.h"

namespace bench {

/// Returns the touch of a frame. The finger moves in a circle around the middle of the screen, fast enough to count as
/// a drag.
hostkit::Touch circlingTouch(const hostkit::EffectHost& host, int frame);

}  // namespace bench
