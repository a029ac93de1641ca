#include "water/height_field.h"

#include <cstddef>

#include "simd/float4.h"
#include "simd/flush_subnormals.h"

namespace velmora {

namespace {

constexpr float heightLimit = 100.0f;
constexpr float calmThreshold = 0.009f;
constexpr float smoothing = 0.018f;
constexpr float strongSmoothing = 0.068f;
constexpr float strongSmoothingDamping =
    0.94f;  // the one damping that asks for it, compared exactly

/// Rows smoothed side by side. In a row alone, each group waits for the one before it.
constexpr int smoothedTogether = 4;

/// One row of the rectangle in both grids.
struct WaterRow {
    float* velocity;
    float* height;
};

template <class Floats>
Floats laplacian(Floats top, Floats left, Floats right, Floats bottom, Floats cell) {
    return top + left + right + bottom - Floats(4.0f) * cell;
}

template <class Floats>
auto leavesCalm(Floats velocity) {
    return (velocity > Floats(calmThreshold)) | (velocity < Floats(-calmThreshold));
}

/// NaN passes through: neither comparison holds.
template <class Floats>
Floats clampedHeight(Floats sum) {
    return select(sum > Floats(heightLimit), Floats(heightLimit),
                  select(sum < Floats(-heightLimit), Floats(-heightLimit), sum));
}

/// First pass for one group or cell. Returns its new velocity.
template <class Floats>
Floats accelerate(WaterRow row, std::ptrdiff_t x, Floats top, std::ptrdiff_t rowLength,
                  const WaveSettings& settings) {
    const float* const cell = row.height + x;
    const Floats lap = laplacian(top, load<Floats>(cell - 1), load<Floats>(cell + 1),
                                 load<Floats>(cell + rowLength), load<Floats>(cell));
    const Floats velocity = (load<Floats>(row.velocity + x) + Floats(settings.waveSpeed) * lap) *
                            Floats(settings.damping);
    store(row.velocity + x, velocity);
    return velocity;
}

/// Second pass for one group or cell, whose height is `height`.
template <class Floats>
void moveCell(WaterRow row, std::ptrdiff_t x, Floats height) {
    store(row.height + x, clampedHeight(height + load<Floats>(row.velocity + x)));
}

/// First pass for `row` and, where `above` is a row of the rectangle, second pass for that one: a
/// height moves when the acceleration of the cell below it has read it. Returns whether a new
/// velocity leaves the calm band; without `detectCalm`, false.
template <bool detectCalm, bool movesAbove>
bool accelerateRow(WaterRow row, WaterRow above, std::ptrdiff_t width, std::ptrdiff_t rowLength,
                   const WaveSettings& waves) {
    const WaveSettings settings = waves;
    bool isMoving = false;
    forGroups(0, width, [&]<class Floats>(std::ptrdiff_t x) {
        const Floats top = load<Floats>(above.height + x);
        const Floats velocity = accelerate(row, x, top, rowLength, settings);
        if constexpr (movesAbove) {
            moveCell(above, x, top);
        }
        if constexpr (detectCalm) {
            isMoving = isMoving || any(leavesCalm(velocity));
        }
    });
    return isMoving;
}

template <bool movesAbove>
bool accelerateRow(WaterRow row, WaterRow above, std::ptrdiff_t width, std::ptrdiff_t rowLength,
                   const WaveSettings& settings, bool detectCalm) {
    return detectCalm ? accelerateRow<true, movesAbove>(row, above, width, rowLength, settings)
                      : accelerateRow<false, movesAbove>(row, above, width, rowLength, settings);
}

void moveRow(WaterRow row, std::ptrdiff_t width) {
    forGroups(0, width, [=]<class Floats>(std::ptrdiff_t x) {
        moveCell(row, x, load<Floats>(row.height + x));
    });
}

/// Third pass, one group or cell, in place: `left` holds the group before as it was smoothed, whose
/// last cell is the only smoothed left neighbour that a group sees. Returns the smoothed group.
template <class Floats>
Floats smooth(float* cell, std::ptrdiff_t rowLength, Floats weight, Floats left) {
    const Floats height = load<Floats>(cell);
    const Floats lap = laplacian(load<Floats>(cell - rowLength), shiftIn(left, height),
                                 load<Floats>(cell + 1), load<Floats>(cell + rowLength), height);
    const Floats smoothed = height + weight * lap;
    store(cell, smoothed);
    return smoothed;
}

/// Third pass, `rows` rows: each a group behind the one above it, which it needs smoothed, so that
/// their chains from group to group run at once. The cells left over follow, row by row.
template <int rows>
void smoothRows(float* first, std::ptrdiff_t width, std::ptrdiff_t rowLength, float weight) {
    const std::ptrdiff_t groups = width / 4;
    Float4 left[static_cast<std::size_t>(rows)];
    for (int row = 0; row < rows; ++row) {
        left[row] = Float4(first[row * rowLength - 1]);
    }
    for (std::ptrdiff_t turn = 0; turn < groups + rows - 1; ++turn) {
        for (int row = 0; row < rows; ++row) {
            const std::ptrdiff_t group = turn - row;
            if (group >= 0 && group < groups) {
                left[row] = smooth(first + row * rowLength + group * 4, rowLength, Float4(weight),
                                   left[row]);
            }
        }
    }
    for (int row = 0; row < rows; ++row) {
        float* const cells = first + row * rowLength;
        for (std::ptrdiff_t x = groups * 4; x < width; ++x) {
            smooth(cells + x, rowLength, weight, cells[x - 1]);
        }
    }
}

}  // namespace

bool stepHeightField(const WaterGrids& grids, const WaterRectangle& rectangle,
                     const WaveSettings& settings) {
    if (rectangle.x0 >= rectangle.x1 || rectangle.y0 >= rectangle.y1) {
        return true;
    }
    const FlushSubnormals flush;
    const std::ptrdiff_t width = std::ptrdiff_t{rectangle.x1} - rectangle.x0;
    const std::ptrdiff_t rowLength = grids.rowLength;
    const float weight = settings.damping == strongSmoothingDamping ? strongSmoothing : smoothing;
    const auto rowAt = [&](std::ptrdiff_t y) {
        const std::ptrdiff_t start = y * rowLength + rectangle.x0;
        return WaterRow{grids.velocity + start, grids.height + start};
    };
    bool isMoving = false;
    // One walk over the rows for all three passes, so that each row is fetched once. A row is moved
    // when the row below it is accelerated, and smoothed when the row below it is moved.
    std::ptrdiff_t unsmoothed = rectangle.y0;
    for (std::ptrdiff_t y = rectangle.y0; y < rectangle.y1; ++y) {
        const bool detectCalm = settings.detectCalm && !isMoving;
        isMoving |= y == rectangle.y0 ? accelerateRow<false>(rowAt(y), rowAt(y - 1), width,
                                                             rowLength, settings, detectCalm)
                                      : accelerateRow<true>(rowAt(y), rowAt(y - 1), width,
                                                            rowLength, settings, detectCalm);
        if (y - 1 - unsmoothed >= smoothedTogether) {
            smoothRows<smoothedTogether>(rowAt(unsmoothed).height, width, rowLength, weight);
            unsmoothed += smoothedTogether;
        }
    }
    moveRow(rowAt(std::ptrdiff_t{rectangle.y1} - 1), width);
    for (; unsmoothed < rectangle.y1; ++unsmoothed) {
        smoothRows<1>(rowAt(unsmoothed).height, width, rowLength, weight);
    }
    return !isMoving;
}

}  // namespace velmora
