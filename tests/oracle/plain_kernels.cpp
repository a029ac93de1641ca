#include "tests/oracle/plain_kernels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/saturate.h"

using namespace velmora;

namespace reference {

namespace {

constexpr float heightLimit = 100.0f;
constexpr float calmThreshold = 0.009f;

float laplacian(const float* h, int i, int rowLength) {
    return h[i - rowLength] + h[i - 1] + h[i + 1] + h[i + rowLength] - 4.0f * h[i];
}

/// Returns true if the magnitude of any velocity in the row exceeds the threshold below which water is calm.
bool isMoving(const float* velocities, int width) {
    return std::any_of(velocities, velocities + width, [](float velocity) {
        return velocity > calmThreshold || velocity < -calmThreshold;
    });
}

/// Adds the waves' acceleration to the velocities. Returns true if the water is calm. A separate loop searches for
/// moving water, because a search inside the first loop would prevent vectorisation.
bool updateVelocities(const WaterGrids& grids, const WaterRectangle& area,
                      const WaveSettings& settings) {
    float* const v = grids.velocity;
    const float* const h = grids.height;
    const float waveSpeed = settings.waveSpeed;
    const float damping = settings.damping;
    bool calm = true;
    for (int y = area.y0; y < area.y1; ++y) {
        for (int x = area.x0; x < area.x1; ++x) {
            const int i = y * grids.rowLength + x;
            v[i] = (v[i] + waveSpeed * laplacian(h, i, grids.rowLength)) * damping;
        }
        if (settings.detectCalm && calm) {
            calm = !isMoving(v + y * grids.rowLength + area.x0, area.x1 - area.x0);
        }
    }
    return calm;
}

void moveHeights(const WaterGrids& grids, const WaterRectangle& area) {
    const float* const v = grids.velocity;
    float* const h = grids.height;
    for (int y = area.y0; y < area.y1; ++y) {
        for (int x = area.x0; x < area.x1; ++x) {
            const int i = y * grids.rowLength + x;
            const float sum = h[i] + v[i];
            h[i] = sum > heightLimit ? heightLimit : sum < -heightLimit ? -heightLimit : sum;
        }
    }
}

/// Smooths the heights of each row in groups of four cells, then the remaining cells one by one. Each group is read
/// completely before it is written. The four new heights are separate variables, so that they stay in registers. The
/// compiler would store an array to memory and load it again.
void smoothHeights(const WaterGrids& grids, const WaterRectangle& area, float weight) {
    float* const h = grids.height;
    const int rowLength = grids.rowLength;
    const auto smoothed = [=](int i) { return h[i] + weight * laplacian(h, i, rowLength); };
    for (int y = area.y0; y < area.y1; ++y) {
        int i = y * rowLength + area.x0;
        const int end = y * rowLength + area.x1;
        for (; i + 4 <= end; i += 4) {
            const float first = smoothed(i);
            const float second = smoothed(i + 1);
            const float third = smoothed(i + 2);
            const float fourth = smoothed(i + 3);
            h[i] = first;
            h[i + 1] = second;
            h[i + 2] = third;
            h[i + 3] = fourth;
        }
        for (; i < end; ++i) {
            h[i] = smoothed(i);
        }
    }
}

/// Departure points of the cells of a row. Of the four cells around a point, `column` and `row` give the lower left
/// cell. `fx` and `fy` are the distances of the point from this cell.
struct DeparturePoints {
    int column[maxGridSide], row[maxGridSide];
    float fx[maxGridSide], fy[maxGridSide];
};
DeparturePoints points;

/// Returns the value at the departure point of cell `at` in the row, by bilinear interpolation.
Float2 mixed(const FloatGrid& grid, int at) {
    const int i0 = points.column[at];
    const int j0 = points.row[at];
    const int i1 = std::min(i0 + 1, grid.width - 1);
    const int j1 = std::min(j0 + 1, grid.height - 1);
    const float fx = points.fx[at];
    const float fy = points.fy[at];
    const float* const g00 = grid.data + (i0 + j0 * grid.width) * 2;
    const float* const g10 = grid.data + (i1 + j0 * grid.width) * 2;
    const float* const g01 = grid.data + (i0 + j1 * grid.width) * 2;
    const float* const g11 = grid.data + (i1 + j1 * grid.width) * 2;
    const float w00 = (1.0f - fx) * (1.0f - fy);
    const float w10 = fx * (1.0f - fy);
    const float w01 = (1.0f - fx) * fy;
    const float w11 = fx * fy;
    return {w00 * g00[0] + w10 * g10[0] + w01 * g01[0] + w11 * g11[0],
            w00 * g00[1] + w10 * g10[1] + w01 * g01[1] + w11 * g11[1]};
}

float squaredDistance(Float2 a, Float2 b) {
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return dx * dx + dy * dy;
}

void sweep(const Jacobi& pass) {
    const int width = pass.output.width;
    const int height = pass.output.height;
    const float* const x = pass.x.data;
    const float* const b = pass.b.data;
    float* const out = pass.output.data;
    const float alpha = pass.alpha;
    const float rbeta = pass.rbeta;
    if (width < 1 || height < 1) {
        return;
    }
    std::fill_n(out, width, 0.0f);
    for (int j = 1; j < height - 1; ++j) {
        out[j * width] = 0.0f;
        for (int i = 1; i < width - 1; ++i) {
            const int at = j * width + i;
            out[at] =
                (x[at - 1] + x[at + 1] + x[at - width] + x[at + width] + alpha * b[at]) * rbeta;
        }
        out[j * width + width - 1] = 0.0f;
    }
    std::fill_n(out + (height - 1) * width, width, 0.0f);
}

}  // namespace

/// Writes the vertices column by column. Computing the column of each vertex by a division would take three times as
/// long.
void writeMeshPositions(float* positions, int vertexCount, const MeshShape& shape) {
    const float stepX = static_cast<float>(shape.width) / static_cast<float>(shape.columns - 1);
    const float stepY = static_cast<float>(shape.height) / static_cast<float>(shape.rows - 1);
    const float halfWidth = static_cast<float>(shape.width) * 0.5f;
    const float halfHeight = static_cast<float>(shape.height) * 0.5f;
    int column = 0;
    for (int first = 0; first < vertexCount; first += shape.rows, ++column) {
        const float x = static_cast<float>(column) * stepX - halfWidth;
        const int rows = std::min(shape.rows, vertexCount - first);
        for (int row = 0; row < rows; ++row) {
            positions[0] = x;
            positions[1] = halfHeight - static_cast<float>(row) * stepY;
            positions[2] = 0.0f;
            positions += 3;
        }
    }
}

void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape) {
    const int rows = shape.rows;
    const int columns = shape.columns;
    for (int row = 1; row < rows; ++row) {
        for (int column = 1; column < columns; ++column) {
            const int a = column * rows + row;
            const int left = a - rows;
            std::uint16_t* const quad = indices + 6 * (column - 1);
            quad[0] = static_cast<std::uint16_t>(left - 1);
            quad[1] = static_cast<std::uint16_t>(left);
            quad[2] = static_cast<std::uint16_t>(a);
            quad[3] = static_cast<std::uint16_t>(left - 1);
            quad[4] = static_cast<std::uint16_t>(a);
            quad[5] = static_cast<std::uint16_t>(a - 1);
        }
        indices += 6 * std::max(columns - 1, 0);
    }
}

void addRipple(float* grid, const RippleTouch& touch) {
    const auto width = static_cast<float>(touch.gridWidth);
    const auto height = static_cast<float>(touch.gridHeight);
    const float cx = (touch.x / static_cast<float>(touch.areaWidth) + 0.5f) * width;
    const float cy = (touch.y / static_cast<float>(touch.areaHeight) + 0.5f) * height;
    const int left = cx > 5.0f ? saturatedInt(std::floor(cx - 3.0f)) : 2;
    const int right = cx < width - 5.0f ? saturatedInt(std::floor(cx + 4.0f)) : touch.gridWidth - 1;
    const int top = cy > 5.0f ? saturatedInt(std::floor(cy - 3.0f)) : 2;
    const int bottom =
        cy < height - 5.0f ? saturatedInt(std::floor(cy + 4.0f)) : touch.gridHeight - 1;
    for (int row = top; row < bottom; ++row) {
        for (int column = left; column < right; ++column) {
            const float dx = cx - static_cast<float>(column);
            const float dy = cy - static_cast<float>(row);
            const float depth = 3.0f - std::sqrt(dx * dx + dy * dy);
            if (depth > 0.0f) {
                grid[row * touch.gridWidth + column] += depth * touch.strength;
            }
        }
    }
}

bool stepHeightField(const WaterGrids& grids, const WaterRectangle& rectangle,
                     const WaveSettings& settings) {
    const bool calm = updateVelocities(grids, rectangle, settings);
    moveHeights(grids, rectangle);
    smoothHeights(grids, rectangle, settings.damping == 0.94f ? 0.068f : 0.018f);
    return calm;
}

namespace {

/// Advects the velocities in two loops per row. In each of these short loops, the processor can work on more cells at
/// the same time than in a single long loop.
template <bool pushes>
void advectRows(const AdvectVelocity& pass) {
    const FloatGrid source = pass.source;
    const Float2 texel = pass.texelSize;
    const Float2 cell = pass.cellToScreen;
    const float timeStep = pass.timeStep;
    const float dissipation = pass.dissipation;
    const float factor = static_cast<float>(pass.dragMode) - 1.5f;
    const Float2 touch = pass.touchPoint;
    const Float2 push{factor * pass.touchDelta.x, factor * pass.touchDelta.y};
    for (int j = 0; j < source.height; ++j) {
        const float* const velocity = pass.velocity.data + j * source.width * 2;
        float* const out = pass.output.data + j * source.width * 2;
        const auto row = static_cast<float>(j);
        for (int i = 0; i < source.width; ++i) {
            float u = (static_cast<float>(i) + 0.5f - timeStep * velocity[2 * i]) * texel.x;
            float v = (row + 0.5f - timeStep * velocity[2 * i + 1]) * texel.y;
            u = u > 0.0f ? u : 0.0f;
            u = u < 1.0f ? u : 1.0f;
            v = v > 0.0f ? v : 0.0f;
            v = v < 1.0f ? v : 1.0f;
            const float x = u * static_cast<float>(source.width - 1);
            const float y = v * static_cast<float>(source.height - 1);
            const int i0 = static_cast<int>(x);
            const int j0 = static_cast<int>(y);
            points.column[i] = i0;
            points.row[i] = j0;
            points.fx[i] = x - static_cast<float>(i0);
            points.fy[i] = y - static_cast<float>(j0);
        }
        for (int i = 0; i < source.width; ++i) {
            Float2 advected = mixed(source, i);
            if (pushes &&
                squaredDistance(touch, {static_cast<float>(i) * cell.x, row * cell.y}) < 625.0f) {
                advected.x += push.x;
                advected.y += push.y;
            }
            out[2 * i] = dissipation * advected.x;
            out[2 * i + 1] = dissipation * advected.y;
        }
    }
}

}  // namespace

void advectVelocityKernel(const AdvectVelocity& pass) {
    if (pass.dragMode >= MediumDrag) {
        advectRows<true>(pass);
    } else {
        advectRows<false>(pass);
    }
}

/// Computes the divergence. The edge columns and the sink have separate code, so that the compiler vectorises the main
/// loop.
void computeDivergenceKernel(const ComputeDivergence& pass) {
    const FloatGrid grid = pass.velocity;
    const int width = grid.width;
    const Float2 cell = pass.cellToScreen;
    const Float2 sink = pass.sourcePoint;
    const float squaredRadius = pass.sourceRadius * pass.sourceRadius;
    const float strength = pass.sourceStrength;
    const float scale = pass.halfInverseCellSize;
    for (int j = 0; j < grid.height && width > 0; ++j) {
        const float* const middle = grid.data + j * width * 2;
        const float* const below = grid.data + std::max(j - 1, 0) * width * 2;
        const float* const above = grid.data + std::min(j + 1, grid.height - 1) * width * 2;
        float* const out = pass.output.data + j * width;
        const auto diverge = [=](int left, int i, int right) {
            out[i] =
                ((middle[right * 2] - middle[left * 2]) + (above[i * 2 + 1] - below[i * 2 + 1])) *
                scale;
        };
        diverge(0, 0, std::min(1, width - 1));
        for (int i = 1; i < width - 1; ++i) {
            diverge(i - 1, i, i + 1);
        }
        diverge(std::max(width - 2, 0), width - 1, width - 1);
        const float dy = sink.y - static_cast<float>(j) * cell.y;
        for (int i = 0; i < width; ++i) {
            const float dx = sink.x - static_cast<float>(i) * cell.x;
            out[i] -= dx * dx + dy * dy < squaredRadius ? strength : 0.0f;
        }
    }
}

void jacobiKernel(Jacobi& pass, std::int32_t count) {
    std::fill_n(pass.x.data, pass.x.width * pass.x.height, 0.0f);
    for (std::int32_t iteration = 0; iteration < count; ++iteration) {
        sweep(pass);
        std::swap(pass.x, pass.output);
    }
}

/// Subtracts the pressure gradient. The edge columns have separate code, because clamped indices would prevent
/// vectorisation.
void subtractGradientKernel(const SubtractGradient& pass) {
    const int width = pass.output.width;
    const int height = pass.output.height;
    const float scale = pass.gradientScale;
    for (int j = 0; j < height && width > 0; ++j) {
        const float* const velocity = pass.velocity.data + j * width * 2;
        const float* const middle = pass.pressure.data + j * width;
        const float* const below = pass.pressure.data + std::max(j - 1, 0) * width;
        const float* const above = pass.pressure.data + std::min(j + 1, height - 1) * width;
        float* const out = pass.output.data + j * width * 2;
        const auto subtract = [=](int left, int i, int right) {
            out[2 * i] = velocity[2 * i] - scale * (middle[right] - middle[left]);
            out[2 * i + 1] = velocity[2 * i + 1] - scale * (above[i] - below[i]);
        };
        subtract(0, 0, std::min(1, width - 1));
        for (int i = 1; i < width - 1; ++i) {
            subtract(i - 1, i, i + 1);
        }
        subtract(std::max(width - 2, 0), width - 1, width - 1);
    }
}

void addVelocityKernel(const AddVelocity& pass) {
    const int width = pass.output.width;
    const int height = pass.output.height;
    const float* const velocity = pass.velocity.data;
    float* const out = pass.output.data;
    const Float2 cell = pass.cellToScreen;
    const Float2 start = pass.previous;
    const Float2 end = pass.current;
    const Float2 normal = pass.normal;
    const float length = pass.length;
    const float radius = pass.radius;
    for (int j = 0; j < height; ++j) {
        for (int i = 0; i < width; ++i) {
            const int at = (j * width + i) * 2;
            Float2 v{velocity[at], velocity[at + 1]};
            const Float2 centre{(static_cast<float>(i) + 0.5f) * cell.x,
                                (static_cast<float>(j) + 0.5f) * cell.y};
            const float t = (centre.x - start.x) * normal.x + (centre.y - start.y) * normal.y;
            if (t > 0.0f && t < length) {
                const Float2 foot{start.x + t * normal.x, start.y + t * normal.y};
                const float distance = std::sqrt(squaredDistance(centre, foot));
                if (distance < radius) {
                    v.x += 0.1f * distance * ((centre.x - foot.x) + (end.x - foot.x));
                    v.y += 0.1f * distance * ((centre.y - foot.y) + (end.y - foot.y));
                }
            }
            out[at] = v.x;
            out[at + 1] = v.y;
        }
    }
}

void packComponents(std::uint8_t* to, const float* from, std::ptrdiff_t count) {
    constexpr float k = 0.00392157f;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const float t = std::min(std::max(-127.0f, from[i]), 127.0f) + 127.0f;  // NaN becomes 0
        const float q = t * k;
        const float ft = t - static_cast<float>(static_cast<int>(t));
        const float fq = q - static_cast<float>(static_cast<int>(q));
        to[2 * i] = static_cast<std::uint8_t>((fq - ft * k) * 255.0f);
        to[2 * i + 1] = static_cast<std::uint8_t>(ft * 255.0f);
    }
}

void repeatStep(EffectState& state) {
    const auto run = [&state](auto& pass, auto kernel) {
        pass.velocity = state.velocity;
        pass.output = state.velocityScratch;
        kernel(pass);
        std::swap(state.velocity, state.velocityScratch);
    };
    if (state.stepSettings.dragMode == FastDrag) {
        run(state.addVelocityPass, reference::addVelocityKernel);
    }
    state.advectVelocityPass.source = state.velocity;
    run(state.advectVelocityPass, reference::advectVelocityKernel);
    state.computeDivergencePass.velocity = state.velocity;
    reference::computeDivergenceKernel(state.computeDivergencePass);
    reference::jacobiKernel(state.jacobiPass, state.jacobiIterations);
    state.subtractGradientPass.pressure = state.jacobiPass.x;
    run(state.subtractGradientPass, reference::subtractGradientKernel);
    reference::packComponents(state.packedVelocity, state.velocity.data,
                              std::ptrdiff_t{state.velocity.width} * state.velocity.height * 2);
}

}  // namespace reference
