#include "app/cross_fade.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace app {
namespace {

constexpr std::chrono::nanoseconds fadeTime = std::chrono::seconds(2);
/// Number of steps of a cross-fade. A step changes a channel by at most 8 of 255, which is not visible as a jump.
constexpr int steps = 32;

}  // namespace

CrossFade::CrossFade(hostkit::Image from, hostkit::Image to)
    : first(std::move(from)), second(std::move(to)) {}

bool CrossFade::advance(std::chrono::nanoseconds elapsed) {
    time = std::min(time + elapsed, fadeTime);
    return std::exchange(step, static_cast<int>(time * steps / fadeTime)) != step;
}

hostkit::Image CrossFade::blend() const {
    hostkit::Image image{second.width, second.height,
                         std::vector<std::uint8_t>(second.rgba.size())};
    for (std::size_t at = 0; at < image.rgba.size(); ++at) {
        const int sum = first.rgba[at] * (steps - step) + second.rgba[at] * step;
        image.rgba[at] = static_cast<std::uint8_t>((sum + steps / 2) / steps);
    }
    return image;
}

bool CrossFade::isOver() const {
    return step == steps;
}

}  // namespace app
