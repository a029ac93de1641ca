#pragma once

#include <chrono>

namespace app {

/// Size in pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

/// Time without a change of size before the effect restarts in the new size. A window that the user resizes changes its
/// size many times.
constexpr std::chrono::milliseconds resizeDelay(150);

}  // namespace app
