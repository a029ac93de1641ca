#pragma once

#include <cstdint>

#include "player/settings.h"

namespace player {

/// A look by chance that pleases: within narrower ranges than the sliders', its ink light enough
/// for the picture to show. Each seed has its own, the same everywhere.
Settings randomLook(std::uint32_t seed);

}  // namespace player
