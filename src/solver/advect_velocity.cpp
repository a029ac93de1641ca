#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

constexpr float pushRadiusSquared = 625.0f;  // (25 screen pixels)^2

bool pushes(const Advection& advection) {
    return advection.dragMode >= MediumDrag;
}

/// Where the velocity of the cell centred at (x, y), grid units, carries it from: (u, v).
template <class Floats>
Pair<Floats> origin(const Advection& advection, Floats x, Floats y, Pair<Floats> velocity) {
    const Floats timeStep(advection.timeStep);
    return {(x - timeStep * velocity.x) * Floats(advection.texelSize.x),
            (y - timeStep * velocity.y) * Floats(advection.texelSize.y)};
}

/// Adds the drag push where the cell's corner (i, j) lies near the touch.
template <class Floats>
Pair<Floats> pushed(const Advection& advection, Floats i, Floats j, Pair<Floats> value) {
    const Floats dx = Floats(advection.touchPoint.x) - i * Floats(advection.cellToScreen.x);
    const Floats dy = Floats(advection.touchPoint.y) - j * Floats(advection.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Floats(pushRadiusSquared);
    const float factor = static_cast<float>(advection.dragMode) - 1.5f;
    const Floats pushX(factor * advection.touchDelta.x);
    const Floats pushY(factor * advection.touchDelta.y);
    return {select(near, value.x + pushX, value.x), select(near, value.y + pushY, value.y)};
}

/// What cell (i, j) becomes from the value carried to it.
template <bool withPush, class Floats>
Pair<Floats> arrived(const Advection& advection, Floats i, Floats j, Pair<Floats> value) {
    if constexpr (withPush) {
        value = pushed(advection, i, j, value);
    }
    return {Floats(advection.dissipation) * value.x, Floats(advection.dissipation) * value.y};
}

template <bool withPush, class Floats>
Pair<Floats> advectedCell(const Advection& advection, Floats i, Floats j, Pair<Floats> velocity) {
    const Floats half(0.5f);
    const Pair<Floats> from = origin(advection, i + half, j + half, velocity);
    const BilinearGrid source(advection.source);
    return arrived<withPush>(advection, i, j, sampleBilinear(source, from.x, from.y));
}

/// Origins of some cells of a row. Finding them and fetching from them are loops of their own: the
/// way from a velocity to the carried value is so long that a processor holds no more than two or
/// three groups of it, each of which waits for itself.
struct Origins {
    static constexpr std::ptrdiff_t most = 128;
    std::int32_t cell[most];  // index of the lower left cell; negative where it has no neighbours
    float fx[most], fy[most];
};

/// Entry `at` for the cell in `column` of row j.
template <class Floats>
void findOrigin(const Advection& advection, Origins& origins, std::ptrdiff_t at, Floats column,
                float j, Pair<Floats> velocity) {
    const Floats half(0.5f);
    const BilinearGrid source(advection.source);
    const Pair<Floats> from = origin(advection, column + half, Floats(j) + half, velocity);
    const BilinearPlace<Floats> place(source, from.x, from.y);
    const auto isLast = (place.column > Floats(source.lastColumn - 1.0f)) |
                        (place.row > Floats(source.lastRow - 1.0f));
    const auto cell = truncate(place.row * Floats(source.rowLength) + place.column);
    store(origins.cell + at, minusOneWhere(isLast, cell));
    store(origins.fx + at, place.fx);
    store(origins.fy + at, place.fy);
}

/// Whether all cells of the group at entry `at` have neighbours.
template <class Floats>
bool haveNeighbours(const Origins& origins, std::ptrdiff_t at) {
    std::int32_t all = 0;
    for (std::ptrdiff_t lane = 0; lane < FloatsTraits<Floats>::width; ++lane) {
        all |= origins.cell[at + lane];
    }
    return all >= 0;
}

/// The value at entry `at`, which has neighbours.
template <class Floats>
Pair<Floats> fetched(const FloatGrid& source, const Origins& origins, std::ptrdiff_t at) {
    const std::int32_t* const cell = origins.cell + at;
    const float* const above = source.data + std::ptrdiff_t{source.width} * 2;
    return BilinearWeights<Floats>(load<Floats>(origins.fx + at), load<Floats>(origins.fy + at))
        .weigh(gatherNeighbours<Floats>(source.data, cell), gatherNeighbours<Floats>(above, cell));
}

/// Columns [begin, end) of row j, at most `Origins::most`. Inlined to the bottom: a call for each
/// group would read the constants anew each time.
template <bool withPush>
[[gnu::flatten]] void advectCells(const Advection& pass, const float* velocity, float* out,
                                  std::ptrdiff_t begin, std::ptrdiff_t end, float j) {
    const Advection advection = pass;
    Origins origins;
    forColumns(begin, end, [&]<class Floats>(std::ptrdiff_t i, Floats column) {
        findOrigin(advection, origins, i - begin, column, j, loadPair<Floats>(velocity + i * 2));
    });
    forColumns(begin, end, [&]<class Floats>(std::ptrdiff_t i, Floats column) {
        storePair(out + i * 2,
                  haveNeighbours<Floats>(origins, i - begin)
                      ? arrived<withPush>(advection, column, Floats(j),
                                          fetched<Floats>(advection.source, origins, i - begin))
                      : advectedCell<withPush>(advection, column, Floats(j),
                                               loadPair<Floats>(velocity + i * 2)));
    });
}

template <bool withPush>
void advectRow(const Advection& advection, const float* velocity, float* out, std::ptrdiff_t width,
               float j) {
    for (std::ptrdiff_t begin = 0; begin < width; begin += Origins::most) {
        advectCells<withPush>(advection, velocity, out, begin,
                              std::min(begin + Origins::most, width), j);
    }
}

/// Whether the push can reach a cell of row j.
bool isPushed(const Advection& advection, float j) {
    const float dy = advection.touchPoint.y - j * advection.cellToScreen.y;
    return dy * dy < pushRadiusSquared;
}

}  // namespace

void AdvectVelocity::evaluate(Float2 coord, float* out) const {
    const Cell cell = sampleNearest(velocity, coord.x * texelSize.x, coord.y * texelSize.y);
    const float i = coord.x - 0.5f;
    const float j = coord.y - 0.5f;
    const Float2 own = pairAt(velocity, cell);
    storePair(out, pushes(*this) ? advectedCell<true>(*this, i, j, own)
                                 : advectedCell<false>(*this, i, j, own));
}

void advectVelocityKernel(const AdvectVelocity& pass) {
    if (pass.output.data == nullptr) {
        return;
    }
    const std::ptrdiff_t width = pass.output.width;
    for (std::ptrdiff_t row = 0; row < pass.output.height; ++row) {
        const float* const velocity = pass.velocity.data + row * width * 2;
        float* const out = pass.output.data + row * width * 2;
        const auto j = static_cast<float>(row);
        if (pushes(pass) && isPushed(pass, j)) {
            advectRow<true>(pass, velocity, out, width, j);
        } else {
            advectRow<false>(pass, velocity, out, width, j);
        }
    }
}

}  // namespace velmora
