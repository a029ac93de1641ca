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
    0.94f;  // the damping that selects strongSmoothing, compared exactly

/// Number of rows smoothed side by side. Within a row, each group waits for the group before it.
constexpr std::ptrdiff_t smoothedTogether = 6;

/// The part of a grid row inside the updated rectangle, in the velocity grid and in the height grid.
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

/// Keeps NaN: if a comparison fails, min and max return their second operand.
template <class Floats>
Floats clampedHeight(Floats sum) {
    return max(Floats(-heightLimit), min(Floats(heightLimit), sum));
}

/// Runs the first pass for one group or cell. Returns its new velocity.
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

/// Runs the second pass for one group or cell with this height.
template <class Floats>
void moveCell(WaterRow row, std::ptrdiff_t x, Floats height) {
    store(row.height + x, clampedHeight(height + load<Floats>(row.velocity + x)));
}

/// Runs the first pass for `row`. If `above` is a row of the rectangle, also runs the second pass for that row: a
/// height moves after the cell below it has read it. Returns true if a new velocity leaves the calm band; false
/// without `detectCalm`.
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

/// Returns one group or cell after the third pass. `top` is smoothed. `left` is the smoothed group before, whose last
/// cell is the only smoothed left neighbour of the group.
template <class Floats>
Floats smoothed(const float* cell, std::ptrdiff_t rowLength, Floats weight, Floats top,
                Floats left) {
    const Floats height = load<Floats>(cell);
    const Floats lap = laplacian(top, slideRight(left, height), load<Floats>(cell + 1),
                                 load<Floats>(cell + rowLength), height);
    return height + weight * lap;
}

/// Runs the third pass for one group or cell in place, and returns its new heights.
template <class Floats>
Floats smooth(float* cell, std::ptrdiff_t rowLength, Floats weight, Floats left) {
    const Floats value = smoothed(cell, rowLength, weight, load<Floats>(cell - rowLength), left);
    store(cell, value);
    return value;
}

/// Runs the third pass for the groups [begin, end) of one row. Returns the last group, or `left` if there is none.
Float4 smoothGroups(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t begin,
                    std::ptrdiff_t end, Float4 left) {
    for (std::ptrdiff_t group = begin; group < end; ++group) {
        left = smooth(row + group * 4, rowLength, Float4(weight), left);
    }
    return left;
}

/// Runs the third pass for the last cells of a row, which no group covers.
void smoothRest(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    for (std::ptrdiff_t x = width / 4 * 4; x < width; ++x) {
        smooth(row + x, rowLength, weight, row[x - 1]);
    }
}

void smoothRow(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    smoothGroups(row, rowLength, weight, 0, width / 4, Float4(row[-1]));
    smoothRest(row, rowLength, weight, width);
}

/// Runs the third pass for six rows side by side, of at least `smoothedTogether` groups each. A group needs the
/// smoothed group above it, so each row is one group behind the row above. The six chains from group to group then run
/// at once. The variables a to f hold the last group of each row; an array would go through memory. No row writes what
/// another row reads, so all stores come last: a processor that executes in order also overlaps the six chains.
void smoothSixRows(float* first, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    const std::ptrdiff_t groups = width / 4;
    const auto row = [=](std::ptrdiff_t r) { return first + r * rowLength; };
    // When the six rows start together, row r has already smoothed 5 - r groups.
    const auto start = [=](std::ptrdiff_t r) {
        return smoothGroups(row(r), rowLength, weight, 0, smoothedTogether - 1 - r,
                            Float4(row(r)[-1]));
    };
    Float4 a = start(0);
    Float4 b = start(1);
    Float4 c = start(2);
    Float4 d = start(3);
    Float4 e = start(4);
    Float4 f = start(5);
    for (std::ptrdiff_t group = smoothedTogether - 1; group < groups; ++group) {
        const auto cell = [=](std::ptrdiff_t r) { return row(r) + (group - r) * 4; };
        const auto next = [=](std::ptrdiff_t r, Float4 top, Float4 left) {
            return smoothed(cell(r), rowLength, Float4(weight), top, left);
        };
        f = next(5, e, f);
        e = next(4, d, e);
        d = next(3, c, d);
        c = next(2, b, c);
        b = next(1, a, b);
        a = next(0, load<Float4>(cell(0) - rowLength), a);
        store(cell(0), a);
        store(cell(1), b);
        store(cell(2), c);
        store(cell(3), d);
        store(cell(4), e);
        store(cell(5), f);
    }
    const Float4 left[smoothedTogether] = {a, b, c, d, e, f};
    for (std::ptrdiff_t r = 0; r < smoothedTogether; ++r) {
        smoothGroups(row(r), rowLength, weight, groups - r, groups, left[r]);
        smoothRest(row(r), rowLength, weight, width);
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
    // One loop over the rows runs all three passes, so that memory is read once. A row is moved after the row below it
    // is accelerated, and smoothed after the row below it is moved.
    std::ptrdiff_t unsmoothed = rectangle.y0;
    const auto smoothSixes = [&](std::ptrdiff_t end) {
        if (width >= 4 * smoothedTogether && end - unsmoothed >= smoothedTogether) {
            smoothSixRows(rowAt(unsmoothed).height, rowLength, weight, width);
            unsmoothed += smoothedTogether;
        }
    };
    for (std::ptrdiff_t y = rectangle.y0; y < rectangle.y1; ++y) {
        const bool detectCalm = settings.detectCalm && !isMoving;
        isMoving |= y == rectangle.y0 ? accelerateRow<false>(rowAt(y), rowAt(y - 1), width,
                                                             rowLength, settings, detectCalm)
                                      : accelerateRow<true>(rowAt(y), rowAt(y - 1), width,
                                                            rowLength, settings, detectCalm);
        smoothSixes(y - 1);
    }
    moveRow(rowAt(std::ptrdiff_t{rectangle.y1} - 1), width);
    smoothSixes(rectangle.y1);
    for (; unsmoothed < rectangle.y1; ++unsmoothed) {
        smoothRow(rowAt(unsmoothed).height, rowLength, weight, width);
    }
    return !isMoving;
}

}  // namespace velmora
