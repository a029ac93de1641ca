#include "bench/circling_touch.h"

#include <cmath>
#include <numbers>

namespace bench {

hostkit::Touch circlingTouch(const hostkit::EffectHost& host, int frame) {
    const double angle = frame * 2.0 * std::numbers::pi / 90.0;
    const auto action = frame == 0 ? hostkit::TouchAction::down : hostkit::TouchAction::move;
    return {action, host.width() * (0.5 + 0.3 * std::cos(angle)),
            host.height() * (0.5 + 0.3 * std::sin(angle)), 0.5f};
}

}  // namespace bench
