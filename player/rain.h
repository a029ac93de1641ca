#pragma once

#include <chrono>
#include <cstdint>

#include "hostkit/effect_host.h"
#include "player/settings.h"

namespace player {

/// Drops that fall by themselves; the same ones in every run.
struct Rain {
    double dropsDue = 0.0;
    std::uint32_t seed = 1;
};

/// Lets the drops of `elapsed` fall on the host's water.
void fall(Rain& rain, hostkit::EffectHost& host, const Settings& settings,
          std::chrono::nanoseconds elapsed);

}  // namespace player
