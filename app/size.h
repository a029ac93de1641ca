#pragma once

namespace app {

/// Size in pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

}  // namespace app
