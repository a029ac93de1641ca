#pragma once

#include <chrono>

namespace player {

/// A frame of the effect: a 60th of a second of its time.
constexpr std::chrono::nanoseconds frameTime(16'666'667);

}  // namespace player
