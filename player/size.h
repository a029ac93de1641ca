#pragma once

#include <optional>
#include <string_view>

#include "app/size.h"

namespace player {

// A smaller screen has no solver cell, which takes 12 pixels; a larger one exceeds the usual limits
// of GL.
constexpr int minSide = 16;
constexpr int maxSide = 4096;

/// Reads WIDTHxHEIGHT; empty if the text is something else or beyond the limits.
std::optional<app::Size> parseSize(std::string_view text);

}  // namespace player
