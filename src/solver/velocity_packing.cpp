#include "solver/velocity_packing.h"

#include <cstdlib>

#include "simd/float4.h"

namespace velmora {

namespace {

constexpr float valueLimit = 127.0f;
constexpr float lowSteps = 255.0f;
constexpr float inverseSteps =
    0.00392157f;  // just above 1 / 255, so that whole values never round down
static_assert(std::bit_cast<std::uint32_t>(inverseSteps) == 0x3B808083);

template <class Lane>
void packLanes(std::uint8_t* to, Lane value) {
    const Lane shifted = min(max(value, Lane(-valueLimit)), Lane(valueLimit)) + Lane(valueLimit);
    const Lane fraction = shifted - toFloat(truncate(shifted));
    // In [0, 1), so it is its own fraction.
    const Lane scaled = shifted * Lane(inverseSteps);
    const auto low = truncate(fraction * Lane(lowSteps));
    const auto high = truncate((scaled - fraction * Lane(inverseSteps)) * Lane(lowSteps));
    storeBytePairs(to, high, low);
}

}  // namespace

void reallocatePackedVelocity(std::uint8_t*& block, std::int32_t width, std::int32_t height) {
    std::free(block);
    block = nullptr;
    if (!isGridSize(width, height)) {
        return;
    }
    const auto cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    block = static_cast<std::uint8_t*>(std::malloc(cells * 4));
    for (std::size_t component = 0; block != nullptr && component < cells * 2; ++component) {
        packLanes(block + component * 2, 0.0f);
    }
}

void packComponents(std::uint8_t* to, const float* from, std::ptrdiff_t count) {
    forLanes(0, count,
             [&]<class Lane>(std::ptrdiff_t i) { packLanes(to + i * 2, load<Lane>(from + i)); });
}

void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target) {
    if (velocity.data == nullptr) {
        return;
    }
    if (state.packedVelocity == nullptr) {
        reallocatePackedVelocity(state.packedVelocity, target.width, target.height);
    }
    if (state.packedVelocity != nullptr) {
        packComponents(state.packedVelocity, velocity.data,
                       std::ptrdiff_t{target.width} * target.height * 2);
    }
}

}  // namespace velmora
