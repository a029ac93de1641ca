#pragma once

#include <optional>
#include <string_view>

namespace player {

/// In pixels.
struct Size {
    int width;
    int height;
    bool operator==(const Size&) const = default;
};

// A smaller screen has no solver cell, which takes 12 pixels; a larger one exceeds the usual limits
// of GL.
constexpr int smallestSide = 16;
constexpr int largestSide = 4096;

/// WIDTHxHEIGHT; nothing where it is something else or beyond the limits.
std::optional<Size> parseSize(std::string_view text);

}  // namespace player
