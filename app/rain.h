#pragma once

#include <chrono>
#include <cstdint>

#include "app/settings.h"
#include "hostkit/effect_host.h"

namespace app {

/// Rain that falls the same way in every run.
struct Rain {
    double dropsDue = 0.0;
    std::uint32_t seed = 1;
};

/// Drops the raindrops of `elapsed` on the host's water.
void dropRain(Rain& rain, hostkit::EffectHost& host, const Settings& settings,
              std::chrono::nanoseconds elapsed);

}  // namespace app
