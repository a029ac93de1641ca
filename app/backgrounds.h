#pragma once

#include "hostkit/picture.h"

namespace app {

/// The two images under the water.
struct Backgrounds {
    /// Image that is shown by default.
    hostkit::Picture first;
    /// Image that is shown if `Settings::secondBackground` is set.
    hostkit::Picture second;
};

}  // namespace app
