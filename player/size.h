#pragma once

#include <optional>
#include <string_view>

#include "app/size.h"

namespace player {

// Limits of a screen side, in pixels. The minimum leaves room for at least one solver cell, which has sides of 12
// pixels. The maximum is within the usual size limits of GL.
constexpr int minSide = 16;
constexpr int maxSide = 4096;

/// Reads WIDTHxHEIGHT, with a small or a capital X. Returns nothing if the text has another form or a side is outside
/// the limits.
std::optional<app::Size> parseSize(std::string_view text);

}  // namespace player
