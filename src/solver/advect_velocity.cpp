#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

constexpr float pushRadiusSquared = 625.0f;  // (25 screen pixels)^2

/// The numbers of a pass, by value.
struct Advection {
    explicit Advection(const AdvectVelocity& pass)
        : source(pass.source),
          texelSize(pass.texelSize),
          cellToScreen(pass.cellToScreen),
          touchPoint(pass.touchPoint),
          timeStep(pass.timeStep),
          dissipation(pass.dissipation) {
        const float factor = static_cast<float>(pass.dragMode) - 1.5f;
        push = {factor * pass.touchDelta.x, factor * pass.touchDelta.y};
    }

    BilinearGrid source;
    Float2 texelSize, cellToScreen, touchPoint;
    Float2 push;  // what a drag adds near the touch
    float timeStep, dissipation;
};

/// The value carried to the cell centred at (x, y), grid units, by its own velocity.
template <class Floats>
Pair<Floats> carried(const Advection& advection, Floats x, Floats y, Pair<Floats> velocity) {
    const Floats timeStep(advection.timeStep);
    return sampleBilinear<Floats>(advection.source,
                                  (x - timeStep * velocity.x) * Floats(advection.texelSize.x),
                                  (y - timeStep * velocity.y) * Floats(advection.texelSize.y));
}

/// Adds the drag push where the cell's corner (i, j) lies near the touch.
template <class Floats>
Pair<Floats> pushed(const Advection& advection, Floats i, Floats j, Pair<Floats> value) {
    const Floats dx = Floats(advection.touchPoint.x) - i * Floats(advection.cellToScreen.x);
    const Floats dy = Floats(advection.touchPoint.y) - j * Floats(advection.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Floats(pushRadiusSquared);
    return {select(near, value.x + Floats(advection.push.x), value.x),
            select(near, value.y + Floats(advection.push.y), value.y)};
}

template <bool withPush, class Floats>
Pair<Floats> advectedCell(const Advection& advection, Floats i, Floats j, Pair<Floats> velocity) {
    const Floats half(0.5f);
    Pair<Floats> value = carried(advection, i + half, j + half, velocity);
    if constexpr (withPush) {
        value = pushed(advection, i, j, value);
    }
    return {Floats(advection.dissipation) * value.x, Floats(advection.dissipation) * value.y};
}

/// Row j of a grid of `width` cells. Inlined to the bottom: a call for each group would read the
/// constants anew each time.
template <bool withPush>
[[gnu::flatten]] void advectRow(const Advection& pass, const float* velocity, float* out,
                                std::ptrdiff_t width, float j) {
    const Advection advection = pass;
    forColumns(0, width, [=]<class Floats>(std::ptrdiff_t i, Floats column) {
        storePair(out + i * 2, advectedCell<withPush>(advection, column, Floats(j),
                                                      loadPair<Floats>(velocity + i * 2)));
    });
}

/// Whether the push can reach a cell of row j.
bool isPushed(const Advection& advection, float j) {
    const float dy = advection.touchPoint.y - j * advection.cellToScreen.y;
    return dy * dy < pushRadiusSquared;
}

}  // namespace

void AdvectVelocity::evaluate(Float2 coord, float* out) const {
    const Advection advection(*this);
    const Cell cell = sampleNearest(velocity, coord.x * texelSize.x, coord.y * texelSize.y);
    const float i = coord.x - 0.5f;
    const float j = coord.y - 0.5f;
    const Float2 own = pairAt(velocity, cell);
    storePair(out, dragMode > 0 ? advectedCell<true>(advection, i, j, own)
                                : advectedCell<false>(advection, i, j, own));
}

void advectVelocityKernel(const AdvectVelocity& pass) {
    if (pass.output.data == nullptr) {
        return;
    }
    const Advection advection(pass);
    const std::ptrdiff_t width = pass.output.width;
    for (std::ptrdiff_t row = 0; row < pass.output.height; ++row) {
        const float* const velocity = pass.velocity.data + row * width * 2;
        float* const out = pass.output.data + row * width * 2;
        const auto j = static_cast<float>(row);
        if (pass.dragMode > 0 && isPushed(advection, j)) {
            advectRow<true>(advection, velocity, out, width, j);
        } else {
            advectRow<false>(advection, velocity, out, width, j);
        }
    }
}

}  // namespace velmora
