#include "solver/velocity_packing.h"

#include <cstddef>
#include <cstdlib>

#include "simd/float4.h"

namespace velmora {

namespace {

constexpr float valueLimit = 127.0f;
constexpr float lowSteps = 255.0f;
// Slightly more than 1 / 255, so that the high byte of a whole number n is n and never n - 1.
constexpr float inverseSteps = 0.00392157f;
static_assert(inverseSteps == 0x1.010106p-8f);

template <class Floats>
BytePairs<IntOf<Floats>> packed(Floats value) {
    const Floats shifted =
        min(max(value, Floats(-valueLimit)), Floats(valueLimit)) + Floats(valueLimit);
    const Floats fraction = shifted - toFloat(truncateSmall(shifted));
    // `scaled` is in [0, 1), so its fractional part is `scaled` itself. Unlike `shifted`, it needs no call of
    // truncateSmall.
    const Floats scaled = shifted * Floats(inverseSteps);
    return {truncateSmall((scaled - fraction * Floats(inverseSteps)) * Floats(lowSteps)),
            truncateSmall(fraction * Floats(lowSteps))};
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
    const float still[2] = {0.0f, 0.0f};
    for (std::size_t cell = 0; block != nullptr && cell < cells; ++cell) {
        packCells(block + cell * 4, still, 1);
    }
}

void packCells(std::uint8_t* to, const float* from, std::ptrdiff_t cells) {
    forGroups(0, cells, [=]<class Floats>(std::ptrdiff_t i) {
        const float* const components = from + i * 2;
        storeBytePairs(to + i * 4, packed(load<Floats>(components)),
                       packed(load<Floats>(components + FloatsTraits<Floats>::width)));
    });
}

void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target) {
    if (velocity.data == nullptr) {
        return;
    }
    if (state.packedVelocity == nullptr) {
        reallocatePackedVelocity(state.packedVelocity, target.width, target.height);
    }
    if (state.packedVelocity != nullptr) {
        packCells(state.packedVelocity, velocity.data,
                  std::ptrdiff_t{target.width} * target.height);
    }
}

}  // namespace velmora
