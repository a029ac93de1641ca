#pragma once

namespace player {

/// In pixels.
struct Size {
    int width;
    int height;
    bool operator==(const Size&) const = default;
};

}  // namespace player
