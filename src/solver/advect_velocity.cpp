#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

constexpr float pushRadiusSquared = 625.0f;  // (25 screen pixels)^2

/// The value carried to the cell centred at (x, y), grid units, by its own velocity, after decay.
template <class Lane>
Pair<Lane> carried(const AdvectVelocity& pass, Lane x, Lane y, Pair<Lane> velocity) {
    const Lane u = (x - Lane(pass.timeStep) * velocity.x) * Lane(pass.texelSize.x);
    const Lane v = (y - Lane(pass.timeStep) * velocity.y) * Lane(pass.texelSize.y);
    return sampleBilinear<Lane>(pass.source, u, v);
}

/// Adds the drag push where the cell's corner (i, j) lies near the touch.
template <class Lane>
Pair<Lane> pushed(const AdvectVelocity& pass, Lane i, Lane j, Pair<Lane> value) {
    const Lane dx = Lane(pass.touchPoint.x) - i * Lane(pass.cellToScreen.x);
    const Lane dy = Lane(pass.touchPoint.y) - j * Lane(pass.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Lane(pushRadiusSquared);
    const float factor = static_cast<float>(pass.dragMode) - 1.5f;
    return {select(near, value.x + Lane(factor * pass.touchDelta.x), value.x),
            select(near, value.y + Lane(factor * pass.touchDelta.y), value.y)};
}

template <bool withPush, class Lane>
Pair<Lane> advectedCell(const AdvectVelocity& pass, Lane i, Lane j, Pair<Lane> velocity) {
    const Lane half(0.5f);
    Pair<Lane> value = carried(pass, i + half, j + half, velocity);
    if constexpr (withPush) {
        value = pushed(pass, i, j, value);
    }
    return {Lane(pass.dissipation) * value.x, Lane(pass.dissipation) * value.y};
}

template <bool withPush>
void advectGrid(const AdvectVelocity& pass) {
    const FloatGrid& output = pass.output;
    for (std::int32_t j = 0; j < output.height; ++j) {
        const std::ptrdiff_t row = std::ptrdiff_t{j} * output.width * 2;
        forLanes(0, output.width, [&]<class Lane>(std::ptrdiff_t i) {
            const auto velocity = loadPair<Lane>(pass.velocity.data + row + i * 2);
            storePair(output.data + row + i * 2,
                      advectedCell<withPush>(pass, ramp<Lane>(static_cast<float>(i)),
                                             Lane(static_cast<float>(j)), velocity));
        });
    }
}

}  // namespace

void AdvectVelocity::evaluate(Float2 coord, float* out) const {
    const Cell cell = sampleNearest(velocity, coord.x * texelSize.x, coord.y * texelSize.y);
    const float i = coord.x - 0.5f;
    const float j = coord.y - 0.5f;
    storePair(out, dragMode > 0 ? advectedCell<true>(*this, i, j, pairAt(velocity, cell))
                                : advectedCell<false>(*this, i, j, pairAt(velocity, cell)));
}

void advectVelocityKernel(const AdvectVelocity& pass) {
    if (pass.output.data == nullptr) {
        return;
    }
    if (pass.dragMode > 0) {
        advectGrid<true>(pass);
    } else {
        advectGrid<false>(pass);
    }
}

}  // namespace velmora
