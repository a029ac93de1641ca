#pragma once

#include <cstdint>

#include "app/settings.h"

namespace app {

/// Returns random settings that look good. Their ranges are narrower than the ranges of the panel, and the background
/// remains visible through the ink. The same seed gives the same settings on every platform.
Settings randomSettings(std::uint32_t seed);

}  // namespace app
