#include "water/height_field.h"

#include <cstddef>

#include "simd/float4.h"

namespace velmora {

namespace {

constexpr float heightLimit = 100.0f;
constexpr float calmThreshold = 0.009f;
constexpr float smoothing = 0.018f;
constexpr float strongSmoothing = 0.068f;
constexpr float strongSmoothingDamping =
    0.94f;  // the one damping that asks for it, compared exactly

float* rowOf(float* grid, const WaterGrids& grids, int y) {
    return grid + std::ptrdiff_t{y} * grids.rowLength;
}

template <class Lane>
Lane laplacian(const float* cell, std::ptrdiff_t rowLength) {
    return load<Lane>(cell - rowLength) + load<Lane>(cell - 1) + load<Lane>(cell + 1) +
           load<Lane>(cell + rowLength) - Lane(4.0f) * load<Lane>(cell);
}

template <class Lane>
Lane acceleratedVelocity(const float* velocity, const float* height, std::ptrdiff_t rowLength,
                         const WaveSettings& settings) {
    return (load<Lane>(velocity) + Lane(settings.waveSpeed) * laplacian<Lane>(height, rowLength)) *
           Lane(settings.damping);
}

template <class Lane>
bool leavesCalm(Lane velocity) {
    return any((velocity > Lane(calmThreshold)) | (velocity < Lane(-calmThreshold)));
}

/// NaN passes through: neither comparison holds.
template <class Lane>
Lane clampedHeight(Lane sum) {
    return select(sum > Lane(heightLimit), Lane(heightLimit),
                  select(sum < Lane(-heightLimit), Lane(-heightLimit), sum));
}

bool accelerateRow(float* velocity, const float* height, const WaterGrids& grids,
                   const WaterRectangle& rectangle, const WaveSettings& settings, bool calm) {
    forLanes(rectangle.x0, rectangle.x1, [&]<class Lane>(std::ptrdiff_t x) {
        const Lane moved =
            acceleratedVelocity<Lane>(velocity + x, height + x, grids.rowLength, settings);
        store(velocity + x, moved);
        calm = calm && !leavesCalm(moved);
    });
    return calm;
}

void moveRow(const float* velocity, float* height, const WaterRectangle& rectangle) {
    forLanes(rectangle.x0, rectangle.x1, [&]<class Lane>(std::ptrdiff_t x) {
        store(height + x, clampedHeight(load<Lane>(height + x) + load<Lane>(velocity + x)));
    });
}

/// In place: a group of four reads all its inputs before it stores, so that only its first lane
/// sees a smoothed left neighbour; the row above is smoothed already. This order is part of the
/// result.
void smoothRow(float* height, const WaterGrids& grids, const WaterRectangle& rectangle,
               float weight) {
    forLanes(rectangle.x0, rectangle.x1, [&]<class Lane>(std::ptrdiff_t x) {
        store(height + x,
              load<Lane>(height + x) + Lane(weight) * laplacian<Lane>(height + x, grids.rowLength));
    });
}

}  // namespace

bool stepHeightField(const WaterGrids& grids, const WaterRectangle& rectangle,
                     const WaveSettings& settings) {
    bool moving = false;
    for (int y = rectangle.y0; y < rectangle.y1; ++y) {
        const bool undecided = settings.detectCalm && !moving;
        const bool calm =
            accelerateRow(rowOf(grids.velocity, grids, y), rowOf(grids.height, grids, y), grids,
                          rectangle, settings, undecided);
        moving = moving || (undecided && !calm);
    }
    for (int y = rectangle.y0; y < rectangle.y1; ++y) {
        moveRow(rowOf(grids.velocity, grids, y), rowOf(grids.height, grids, y), rectangle);
    }
    const float weight = settings.damping == strongSmoothingDamping ? strongSmoothing : smoothing;
    for (int y = rectangle.y0; y < rectangle.y1; ++y) {
        smoothRow(rowOf(grids.height, grids, y), grids, rectangle, weight);
    }
    return !moving;
}

}  // namespace velmora
