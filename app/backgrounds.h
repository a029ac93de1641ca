#pragma once

#include "hostkit/picture.h"

namespace app {

/// The two images under the water.
struct Backgrounds {
    hostkit::Picture first;
    hostkit::Picture second;
};

}  // namespace app
