#pragma once

#include <cstdint>

#include "app/settings.h"

namespace app {

/// Returns random settings that look good. The values come from narrower ranges than the panel offers, and the
/// background stays visible through the ink. A seed gives the same settings on every platform.
Settings randomSettings(std::uint32_t seed);

}  // namespace app
