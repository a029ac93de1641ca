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
// Damping at which strongSmoothing replaces `smoothing`. The comparison is exact: 0.9400001f selects `smoothing`.
constexpr float strongSmoothingDamping = 0.94f;

/// Number of rows that smoothSixRows smooths at the same time. A row is a chain of dependent operations, so the
/// processor can overlap six rows but not two groups of one row.
constexpr std::ptrdiff_t smoothedTogether = 6;

/// Pointers to the cells of one row inside the updated rectangle, in the velocity grid and in the height grid.
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

/// Limits a height to +-heightLimit. NaN stays NaN, because min and max return their second operand if the comparison
/// fails.
template <class Floats>
Floats clampedHeight(Floats sum) {
    return max(Floats(-heightLimit), min(Floats(heightLimit), sum));
}

/// Runs the first pass, which updates the velocity, for a cell or a group of four. Returns the new velocity.
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

/// Runs the second pass, which adds the velocity to the height, for a cell or a group of four.
template <class Floats>
void moveCell(WaterRow row, std::ptrdiff_t x, Floats height) {
    store(row.height + x, clampedHeight(height + load<Floats>(row.velocity + x)));
}

/// Runs the first pass for `row`. If `movesAbove` is true, also runs the second pass for the row above. The second pass
/// waits until now, because the first pass of `row` reads the old heights of the row above. Returns true if
/// `detectCalm` is true and a new velocity exceeds the calm threshold.
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

/// Returns the smoothed height of a cell, or the smoothed heights of a group of four cells (third pass). `top` holds
/// the smoothed neighbours in the row above. `left` is the smoothed group to the left; only its last cell is used.
/// The other left neighbours are in the group itself and are not smoothed yet.
template <class Floats>
Floats smoothed(const float* cell, std::ptrdiff_t rowLength, Floats weight, Floats top,
                Floats left) {
    const Floats height = load<Floats>(cell);
    const Floats lap = laplacian(top, slideRight(left, height), load<Floats>(cell + 1),
                                 load<Floats>(cell + rowLength), height);
    return height + weight * lap;
}

/// Runs the third pass for a cell or a group of four, stores the new heights and returns them.
template <class Floats>
Floats smooth(float* cell, std::ptrdiff_t rowLength, Floats weight, Floats left) {
    const Floats value = smoothed(cell, rowLength, weight, load<Floats>(cell - rowLength), left);
    store(cell, value);
    return value;
}

/// Runs the third pass for the groups [begin, end) of a row. Returns the last smoothed group, or `left` if there is
/// none.
Float4 smoothGroups(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t begin,
                    std::ptrdiff_t end, Float4 left) {
    for (std::ptrdiff_t group = begin; group < end; ++group) {
        left = smooth(row + group * 4, rowLength, Float4(weight), left);
    }
    return left;
}

/// Runs the third pass for the last cells of a row, which are too few for a group of four.
void smoothRest(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    for (std::ptrdiff_t x = width / 4 * 4; x < width; ++x) {
        smooth(row + x, rowLength, weight, row[x - 1]);
    }
}

void smoothRow(float* row, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    smoothGroups(row, rowLength, weight, 0, width / 4, Float4(row[-1]));
    smoothRest(row, rowLength, weight, width);
}

/// Runs the third pass for six rows at the same time; a row has at least `smoothedTogether` groups. Each group depends
/// on the group before it, so one row alone is a chain of dependent operations. A group also needs the smoothed group
/// above it, so each row is one group behind the row above. The six chains then overlap. The variables a to f hold the
/// last group of each row; as an array they would be kept in memory. No row writes what another row reads, so all
/// stores can come last. Then even a processor that executes in order overlaps the six chains.
void smoothSixRows(float* first, std::ptrdiff_t rowLength, float weight, std::ptrdiff_t width) {
    const std::ptrdiff_t groups = width / 4;
    const auto row = [=](std::ptrdiff_t r) { return first + r * rowLength; };
    // Smooths the first 5 - r groups of row r. In the loop that follows, each row is then one group behind the row
    // above it.
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
    // A single loop over the rows runs all three passes, so each row is read from memory only once. The second pass of
    // a row follows the first pass of the row below. The third pass of a row follows the second pass of the row below.
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
