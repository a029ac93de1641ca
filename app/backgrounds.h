#pragma once

#include "hostkit/image.h"

namespace app {

/// The two background images under the water.
struct Backgrounds {
    /// Image that is shown by default.
    hostkit::Image first;
    /// Image that is shown if `Settings::secondBackground` is set.
    hostkit::Image second;
};

}  // namespace app
