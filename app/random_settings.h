#pragma once

#include <cstdint>

#include "app/settings.h"

namespace app {

/// Returns random settings that please: within narrower ranges than a panel's, their ink light enough for the
/// background to show. The same seed gives the same settings everywhere.
Settings randomSettings(std::uint32_t seed);

}  // namespace app
