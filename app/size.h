#pragma once

#include <chrono>

namespace app {

/// Size in pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

/// Time for which the size must stay the same before the effect restarts in the new size. A window changes its size
/// many times while the user resizes it.
constexpr std::chrono::milliseconds resizeDelay(150);

}  // namespace app
