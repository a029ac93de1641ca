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

/// Returns the point from which the flow reaches the cell centre (x, y) in one time step. (x, y) is in cells; the
/// result is in texture coordinates, [0, 1] inside the grid.
template <class Floats>
Pair<Floats> departurePoint(const Advection& advection, Floats x, Floats y, Pair<Floats> velocity) {
    const Floats timeStep(advection.timeStep);
    return {(x - timeStep * velocity.x) * Floats(advection.texelSize.x),
            (y - timeStep * velocity.y) * Floats(advection.texelSize.y)};
}

/// Adds the push of a drag if the lower left corner (i, j) of the cell is less than 25 screen pixels from the touch.
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

/// Returns the new velocity of cell (i, j). `value` is the velocity interpolated at the cell's departure point.
template <bool withPush, class Floats>
Pair<Floats> advected(const Advection& advection, Floats i, Floats j, Pair<Floats> value) {
    if constexpr (withPush) {
        value = pushed(advection, i, j, value);
    }
    return {Floats(advection.dissipation) * value.x, Floats(advection.dissipation) * value.y};
}

template <bool withPush, class Floats>
Pair<Floats> advectedCell(const Advection& advection, Floats i, Floats j, Pair<Floats> velocity) {
    const Floats half(0.5f);
    const Pair<Floats> from = departurePoint(advection, i + half, j + half, velocity);
    const BilinearGrid source(advection.source);
    return advected<withPush>(advection, i, j, sampleBilinear(source, from.x, from.y));
}

/// Departure points of up to `capacity` cells of a row. One loop computes the points, and a second loop interpolates
/// there. A single loop would make each SIMD group one long chain of dependent operations, and a processor could
/// overlap only two or three such chains.
struct DeparturePoints {
    static constexpr std::ptrdiff_t capacity = 128;
    // Index of the cell to the lower left of the departure point, or -1 if that cell is in the last column or row.
    std::int32_t cell[capacity];
    float fx[capacity], fy[capacity];
};

/// Computes the departure point of cell (column, j), or of four such cells, and stores it in `points` from entry
/// `at` on.
template <class Floats>
void findDeparturePoint(const Advection& advection, DeparturePoints& points, std::ptrdiff_t at,
                        Floats column, float j, Pair<Floats> velocity) {
    const Floats half(0.5f);
    const BilinearGrid source(advection.source);
    const Pair<Floats> from = departurePoint(advection, column + half, Floats(j) + half, velocity);
    const BilinearPlace<Floats> place(source, from.x, from.y);
    const auto isLast = (place.column > Floats(source.lastColumn - 1.0f)) |
                        (place.row > Floats(source.lastRow - 1.0f));
    const auto cell = truncate(place.row * Floats(source.rowLength) + place.column);
    store(points.cell + at, minusOneWhere(isLast, cell));
    store(points.fx + at, place.fx);
    store(points.fy + at, place.fy);
}

/// Returns true if all four cells around each departure point of the group at entry `at` are in the grid.
template <class Floats>
bool haveNeighbours(const DeparturePoints& points, std::ptrdiff_t at) {
    std::int32_t all = 0;
    for (std::ptrdiff_t lane = 0; lane < FloatsTraits<Floats>::width; ++lane) {
        all |= points.cell[at + lane];
    }
    return all >= 0;
}

/// Returns the velocity interpolated at the departure points from entry `at` on. Call it only if haveNeighbours
/// returns true for the same entry.
template <class Floats>
Pair<Floats> gathered(const FloatGrid& source, const DeparturePoints& points, std::ptrdiff_t at) {
    const std::int32_t* const cell = points.cell + at;
    const float* const above = source.data + std::ptrdiff_t{source.width} * 2;
    return BilinearWeights<Floats>(load<Floats>(points.fx + at), load<Floats>(points.fy + at))
        .weigh(gatherNeighbours<Floats>(source.data, cell), gatherNeighbours<Floats>(above, cell));
}

/// Advects the columns [begin, end) of row j, at most `DeparturePoints::capacity` columns. [[gnu::flatten]] inlines all
/// calls, because a real call in each group would load the constants again.
template <bool withPush>
[[gnu::flatten]] void advectCells(const Advection& pass, const float* velocity, float* out,
                                  std::ptrdiff_t begin, std::ptrdiff_t end, float j) {
    const Advection advection = pass;
    DeparturePoints points;
    forColumns(begin, end, [&]<class Floats>(std::ptrdiff_t i, Floats column) {
        findDeparturePoint(advection, points, i - begin, column, j,
                           loadPair<Floats>(velocity + i * 2));
    });
    forColumns(begin, end, [&]<class Floats>(std::ptrdiff_t i, Floats column) {
        storePair(out + i * 2,
                  haveNeighbours<Floats>(points, i - begin)
                      ? advected<withPush>(advection, column, Floats(j),
                                           gathered<Floats>(advection.source, points, i - begin))
                      : advectedCell<withPush>(advection, column, Floats(j),
                                               loadPair<Floats>(velocity + i * 2)));
    });
}

template <bool withPush>
void advectRow(const Advection& advection, const float* velocity, float* out, std::ptrdiff_t width,
               float j) {
    for (std::ptrdiff_t begin = 0; begin < width; begin += DeparturePoints::capacity) {
        advectCells<withPush>(advection, velocity, out, begin,
                              std::min(begin + DeparturePoints::capacity, width), j);
    }
}

/// Returns true if the push of a drag can reach a cell of row j.
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
