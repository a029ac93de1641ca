#pragma once

#include <chrono>
#include <cstdint>

#include "app/settings.h"
#include "hostkit/effect_host.h"

namespace app {

/// State of the rain. The rain is the same in every run.
struct Rain {
    /// Number of drops that are due. The fraction stays for the next frame.
    double dropsDue = 0.0;
    /// State of the random number generator.
    std::uint32_t seed = 1;
};

/// Raises ripples on the host's water for the drops that fall during `elapsed`.
void dropRain(Rain& rain, hostkit::EffectHost& host, const Settings& settings,
              std::chrono::nanoseconds elapsed);

}  // namespace app
