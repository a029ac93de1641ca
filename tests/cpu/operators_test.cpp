#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

#include "test_memory.h"
#include "tests/oracle/plain_kernels.h"

namespace velmora::test {
namespace {

/// Column and row of a cell.
struct At {
    int i, j;
};

// Returns one component of a cell's value. A cell outside the grid has the value of the nearest edge cell.
float value(const FloatGrid& grid, At at, int floats = 1, int component = 0) {
    const int i = std::clamp(at.i, 0, grid.width - 1);
    const int j = std::clamp(at.j, 0, grid.height - 1);
    return grid.data[(i + j * grid.width) * floats + component];
}

/// Returns a component at the position q by bilinear interpolation. Along each axis, q is 0 at the centre of the first
/// cell and 1 at the centre of the last cell.
float bilinear(const FloatGrid& grid, Float2 q, int floats = 1, int component = 0) {
    const auto clamped = [](float c) { return c > 0.0f ? std::fmin(c, 1.0f) : 0.0f; };
    const float x = clamped(q.x) * static_cast<float>(grid.width - 1);
    const float y = clamped(q.y) * static_cast<float>(grid.height - 1);
    const int i = static_cast<int>(x);
    const int j = static_cast<int>(y);
    const float fx = x - static_cast<float>(i);
    const float fy = y - static_cast<float>(j);
    return (1 - fx) * (1 - fy) * value(grid, {i, j}, floats, component) +
           fx * (1 - fy) * value(grid, {i + 1, j}, floats, component) +
           (1 - fx) * fy * value(grid, {i, j + 1}, floats, component) +
           fx * fy * value(grid, {i + 1, j + 1}, floats, component);
}

Float2 centre(At at, Float2 scale) {
    return {(static_cast<float>(at.i) + 0.5f) * scale.x,
            (static_cast<float>(at.j) + 0.5f) * scale.y};
}
float distance(Float2 a, Float2 b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

// ---- Definitions of the solver passes for which the namespace `reference` has no kernel. Each function returns the
// value that its pass computes for the cell `at`.

float meaning(const AdvectDensity& pass, At at) {
    const Float2 q = centre(at, pass.texelSize);
    const float away = distance(pass.center, centre(at, pass.scale));
    const float step = pass.drag < FastDrag && away < 80.0f ? 0.0075f * away : pass.backStep;
    const Float2 back{
        q.x - step * pass.timeStep * bilinear(pass.velocity, q, 2, 0) * pass.texelSize.x,
        q.y - step * pass.timeStep * bilinear(pass.velocity, q, 2, 1) * pass.texelSize.y};
    return pass.dissipation * bilinear(pass.source, back);
}

float meaning(const Jacobi& pass, At at) {
    const FloatGrid& x = pass.x;
    return (value(x, {at.i - 1, at.j}) + value(x, {at.i + 1, at.j}) + value(x, {at.i, at.j - 1}) +
            value(x, {at.i, at.j + 1}) + pass.alpha * value(pass.b, at)) *
           pass.rbeta;
}

float meaning(const AddInk& pass, At at) {
    const float ink = value(pass.source, at);
    const Float2 p = centre(at, pass.cellToScreen);
    if (pass.mode != FastDrag) {
        const float d = distance(pass.current, p);
        return d < pass.radius ? ink + pass.impulseDensity / (1 + d) : ink;
    }
    const float t =
        (p.x - pass.previous.x) * pass.normal.x + (p.y - pass.previous.y) * pass.normal.y;
    const float d =
        distance(p, {pass.previous.x + t * pass.normal.x, pass.previous.y + t * pass.normal.y});
    const float faded = std::exp(-d * d / (0.8f * pass.radius * pass.radius));
    return 0 < t && t < pass.len && d < pass.radius ? ink + pass.impulseDensity * faded : ink;
}

template <class Pass>
void expectMeaning(const Pass& pass, float tolerance) {
    const int width = pass.output.width;
    const std::vector<float> actual = evaluateCells(pass, width, pass.output.height);
    for (int cell = 0; cell < std::ssize(actual); ++cell) {
        ASSERT_NEAR(actual[static_cast<std::size_t>(cell)],
                    meaning(pass, {cell % width, cell / width}), tolerance)
            << "cell " << cell;
    }
}

/// The seven passes on random grids of one size. A stroke crosses the grid and ends at a touch near the right edge.
/// Kernels compute the last cells of a row one at a time. For each radius, such as those of the stroke and the sink,
/// some of these last cells are inside and some are outside.
struct Passes {
    Passes(int width, int height, Against side, Fill fill)
        : random(static_cast<unsigned>(width * 1000 + height)),
          velocity(width, height, 2, side, fill, random),
          source(width, height, 2, side, fill, random),
          pressure(width, height, 1, side, fill, random),
          right(width, height, 1, side, fill, random),
          vectorOut(width, height, 2, side, fill, random),
          scalarOut(width, height, 1, side, fill, random) {
        const Float2 size{static_cast<float>(width), static_cast<float>(height)};
        advect.output = gradient.output = stroke.output = vectorOut.grid;
        density.output = jacobi.output = divergence.output = ink.output = scalarOut.grid;
        advect.velocity = density.velocity = gradient.velocity = divergence.velocity =
            stroke.velocity = velocity.grid;
        advect.source = source.grid;
        density.source = ink.source = jacobi.x = gradient.pressure = pressure.grid;
        jacobi.b = right.grid;
        advect.texelSize = density.texelSize = jacobi.texelSize = gradient.texelSize =
            divergence.texelSize = ink.texelSize =
                stroke.texelSize = {1.0f / size.x, 1.0f / size.y};
        aim({12.0f, 11.7f}, {12.0f * size.x - 7.3f, 4.68f * size.y}, {2.1f, 5.2f}, 33.0f, 40.0f);
        ink.impulseDensity = 150.0f;
        advect.timeStep = density.timeStep = 0.25f;
        advect.dissipation = density.dissipation = 0.96f;
        advect.touchDelta = {17.0f, -9.0f};
        density.backStep = 1.1f;
        jacobi.alpha = -6.25f;
        jacobi.rbeta = 0.25f;
        gradient.gradientScale = divergence.halfInverseCellSize = 0.2f;
        divergence.sourceStrength = 50.0f;
    }

    void aim(Float2 scale, Float2 touch, Float2 start, float strokeRadius, float sinkRadius) {
        advect.cellToScreen = density.scale = divergence.cellToScreen = ink.cellToScreen =
            stroke.cellToScreen = scale;
        advect.touchPoint = density.center = divergence.sourcePoint = ink.current = stroke.current =
            touch;
        ink.previous = stroke.previous = start;
        ink.len = stroke.length = distance(touch, start);
        ink.normal = stroke.normal = {(touch.x - start.x) / ink.len, (touch.y - start.y) / ink.len};
        ink.radius = stroke.radius = strokeRadius;
        divergence.sourceRadius = sinkRadius;
    }
    void setMode(DragMode mode) { advect.dragMode = density.drag = ink.mode = mode; }

    std::mt19937 random;
    GuardedGrid velocity, source, pressure, right, vectorOut, scalarOut;
    AdvectVelocity advect;
    AdvectDensity density;
    Jacobi jacobi;
    SubtractGradient gradient;
    ComputeDivergence divergence;
    AddInk ink;
    AddVelocity stroke;
};

void expectMeanings(Passes& passes) {
    expectMeaning(passes.jacobi, 1e-4f);
    for (const DragMode mode : {TapMode, SlowDrag, MediumDrag, FastDrag}) {
        passes.setMode(mode);
        expectMeaning(passes.density, 1e-3f);
        expectMeaning(passes.ink, 1e-3f);
    }
}

/// The kernels that a test runs: those of the library, or the scalar kernels of the namespace `reference`.
struct Kernels {
    void (*advect)(const AdvectVelocity&);
    void (*diverge)(const ComputeDivergence&);
    void (*subtract)(const SubtractGradient&);
    void (*addStroke)(const AddVelocity&);
};
constexpr Kernels library{velmora::advectVelocityKernel, velmora::computeDivergenceKernel,
                          velmora::subtractGradientKernel, velmora::addVelocityKernel};
constexpr Kernels plainCode{reference::advectVelocityKernel, reference::computeDivergenceKernel,
                            reference::subtractGradientKernel, reference::addVelocityKernel};

/// Expects that, for each cell, the result of a kernel is bit-identical to the result of the pass's function
/// `evaluate`.
template <class Pass>
void expectKernel(const Pass& pass, void (*kernel)(const Pass&)) {
    const std::vector<float> expected = evaluateCells(pass, pass.output.width, pass.output.height);
    kernel(pass);
    ASSERT_TRUE(areSame({pass.output.data, expected.size()}, expected));
}

void expectKernels(Passes& passes, const Kernels& kernels) {
    for (const DragMode mode : {TapMode, SlowDrag, MediumDrag, FastDrag}) {
        passes.setMode(mode);
        expectKernel(passes.advect, kernels.advect);
    }
    expectKernel(passes.divergence, kernels.diverge);
    expectKernel(passes.gradient, kernels.subtract);
    expectKernel(passes.stroke, kernels.addStroke);
}

TEST(Operators, EachMatchesItsDefinition) {
    for (const auto& [width, height] : {std::pair{23, 17}, {1, 1}, {1, 9}, {9, 1}, {2, 3}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        Passes passes(width, height, Against::back, {20.0f});
        expectMeanings(passes);
        expectKernels(passes, plainCode);
    }
}

TEST(Operators, RadiiAndSegmentsExcludeTheirLimits) {
    // All positions and radii are whole numbers. Therefore some corners or centres of cells lie exactly on a limit:
    // their distance equals a radius, or they are at an end of the stroke.
    Passes passes(30, 30, Against::back, {20.0f});
    passes.aim({4.0f, 4.0f}, {35.0f, 40.0f}, {35.0f, 60.0f}, 5.0f, 25.0f);
    passes.density.center = {70.0f, 86.0f};
    passes.ink.current = {25.0f, 26.0f};
    expectMeanings(passes);
    expectKernels(passes, plainCode);
    passes.ink.previous = passes.stroke.previous = {22.0f, 25.0f};
    passes.ink.normal = passes.stroke.normal = {1.0f, 0.0f};
    passes.ink.len = passes.stroke.length = 8.0f;
    passes.ink.radius = passes.stroke.radius = 3.0f;
    expectMeanings(passes);
    expectKernels(passes, plainCode);
}

TEST(Operators, CoordinatesOutsideTheGridAreClampedAndNanCountsAsZero) {
    Passes passes(23, 17, Against::back, {20.0f});
    fillRandomly(passes.velocity.block.elements(), {500.0f, true}, passes.random);
    passes.setMode(FastDrag);
    expectMeaning(passes.density, 1e-3f);
    expectKernels(passes, plainCode);
}

/// Runs `count` iterations from pressure 0, once with the kernel of the library and once with the scalar kernel of the
/// namespace `reference`. Expects bit-identical results.
void compareIterations(Passes& passes, int count) {
    Jacobi& pass = passes.jacobi;
    const auto gridsAfter = [&](auto kernel) {
        std::fill_n(pass.x.data, contents(pass.x, 1).size(), 5.0f);
        std::fill_n(pass.output.data, contents(pass.output, 1).size(), 7.0f);
        const FloatGrid first = pass.x, second = pass.output;
        kernel();
        std::vector<std::vector<float>> grids = {contents(first, 1), contents(second, 1),
                                                 contents(pass.b, 1)};
        EXPECT_EQ(pass.x.data, (count % 2 == 0 ? first : second).data);
        pass.x = first;
        pass.output = second;
        return grids;
    };
    const auto expected = gridsAfter([&] { reference::jacobiKernel(pass, count); });
    const auto found = gridsAfter([&] { jacobiKernel(pass, count, passes.vectorOut.grid); });
    for (std::size_t grid = 0; grid < expected.size(); ++grid) {
        ASSERT_TRUE(areSame(found[grid], expected[grid])) << count << " iterations, " << grid;
    }
}

/// Runs one iteration from a random pressure, and compares each cell with the result of `evaluate`.
void compareSweep(Passes& passes) {
    Jacobi& pass = passes.jacobi;
    if (pass.output.width < 1 || pass.output.height < 1) {
        return;
    }
    const std::vector<float> all = evaluateCells(pass, pass.output.width, pass.output.height);
    jacobiSweep(pass);
    for (int cell = 0; cell < std::ssize(all); ++cell) {
        const int i = cell % pass.output.width;
        const int j = cell / pass.output.width;
        const bool isBorder =
            i == 0 || j == 0 || i == pass.output.width - 1 || j == pass.output.height - 1;
        const float expected = isBorder ? 0.0f : all[static_cast<std::size_t>(cell)];
        ASSERT_TRUE(isSame(pass.output.data[cell], expected)) << "cell " << cell;
    }
}

void compareKernels(int width, int height, Fill fill) {
    SCOPED_TRACE(testing::Message() << width << " x " << height << " cells, "
                                    << (fill.wild ? "some NaN, infinite or huge" : "all finite"));
    for (const Against side : bothSides) {
        Passes passes(width, height, side, fill);
        expectKernels(passes, library);
        compareSweep(passes);
        for (const int count : {0, 1, 2, 5}) {
            compareIterations(passes, count);
        }
    }
}

// The grids of other tests are in GuardedBlocks, whose addresses are aligned for a whole vector. The grids of this test
// start at unaligned addresses.
TEST(Kernels, JacobiSweepsStayInsideUnalignedGrids) {
    constexpr std::int32_t width = 15;
    for (const std::int32_t height : {30, 31, 32}) {
        const std::size_t cells =
            static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        for (std::size_t first = 0; first < 4; ++first) {
            std::vector<float> x(first + cells + 4, 7.0f), b = x, out = x;
            std::vector<float> workspace(first + 2 * cells + 4, 7.0f);
            const auto grid = [=](std::vector<float>& block) {
                return FloatGrid{block.data() + first, width, height};
            };
            Jacobi pass;
            pass.x = grid(x);
            pass.b = grid(b);
            pass.output = grid(out);
            jacobiKernel(pass, 2, grid(workspace));
            for (const std::vector<float>* block : {&x, &out, &workspace}) {
                EXPECT_TRUE(
                    std::all_of(block->end() - 4, block->end(), [](float v) { return v == 7.0f; }))
                    << height << " rows from " << first;
            }
        }
    }
}

TEST(Kernels, MatchTheOperatorsBitForBitAndStayInsideTheGrids) {
    for (const Fill fill : {Fill{30.0f}, Fill{30.0f, true}, Fill{4000.0f}}) {
        for (int cell = 0; cell < 10 * 10; ++cell) {
            compareKernels(cell % 10, cell / 10, fill);
        }
        for (int width = 14; width <= 19; ++width) {  // 0 to 3 cells of padding per row
            compareKernels(width, 7, fill);
            compareKernels(width, 3 * width, fill);
        }
        compareKernels(90, 160, fill);
        compareKernels(120, 213, fill);
    }
    for (int count = 1; count <= 512; ++count) {  // 1 / count is inexact for most of these
        compareKernels(count, 1, {30.0f});
        compareKernels(1, count, {30.0f});
    }
}

}  // namespace
}  // namespace velmora::test
