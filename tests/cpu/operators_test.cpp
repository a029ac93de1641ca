#include <cstring>

#include "test_memory.h"

namespace velmora::test {
namespace {

using Cells = std::vector<float>;

struct Point {
    Point(float u, float v) : x(u), y(v) {}
    Point(Float2 p) : x(p.x), y(p.y) {}
    operator Float2() const { return {x, y}; }
    friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
    friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
    friend Point operator*(Point a, Point b) { return {a.x * b.x, a.y * b.y}; }
    friend Point operator*(float a, Point b) { return {a * b.x, a * b.y}; }
    friend float dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
    friend float length(Point a) { return std::sqrt(dot(a, a)); }
    float x, y;
};

/// A cell by its column and row.
struct At {
    int i, j;
};
Point corner(At at, Point cellToScreen) {
    return Point(static_cast<float>(at.i), static_cast<float>(at.j)) * cellToScreen;
}
Point centre(At at, Point cellToScreen = {1.0f, 1.0f}) {
    return corner(at, cellToScreen) + 0.5f * cellToScreen;
}

// Cells beyond the grid repeat its edge.
int indexOf(const FloatGrid& grid, At at) {
    return std::clamp(at.i, 0, grid.width - 1) + std::clamp(at.j, 0, grid.height - 1) * grid.width;
}
float scalar(const FloatGrid& grid, At at) {
    return grid.data[indexOf(grid, at)];
}
Point vector(const FloatGrid& grid, At at) {
    const float* cell = grid.data + 2 * indexOf(grid, at);
    return {cell[0], cell[1]};
}

/// The bilinear mix of `value` at q, where 0 and 1 are the first and the last cell.
template <class Value>
auto bilinear(const FloatGrid& grid, Point q, Value value) {
    const auto clamped = [](float c) { return c > 0.0f ? std::fmin(c, 1.0f) : 0.0f; };
    const float x = clamped(q.x) * static_cast<float>(grid.width - 1);
    const float y = clamped(q.y) * static_cast<float>(grid.height - 1);
    const At at{static_cast<int>(x), static_cast<int>(y)};
    const Point f = Point{x, y} - corner(at, {1.0f, 1.0f});
    return ((1 - f.x) * (1 - f.y)) * value(grid, at) +
           (f.x * (1 - f.y)) * value(grid, {at.i + 1, at.j}) +
           ((1 - f.x) * f.y) * value(grid, {at.i, at.j + 1}) +
           (f.x * f.y) * value(grid, {at.i + 1, at.j + 1});
}

// ---- What each pass computes at a cell, from its definition.

Point meaning(const AdvectVelocity& pass, At at) {
    const Point back = centre(at) - pass.timeStep * vector(pass.velocity, at);
    const Point carried = bilinear(pass.source, back * pass.texelSize, vector);
    const bool isNear = length(pass.touchPoint - corner(at, pass.cellToScreen)) < 25.0f;
    const float push = pass.dragMode > 0 && isNear ? static_cast<float>(pass.dragMode) - 1.5f : 0;
    return pass.dissipation * (carried + push * Point(pass.touchDelta));
}

float meaning(const AdvectDensity& pass, At at) {
    const Point v = bilinear(pass.velocity, centre(at) * pass.texelSize, vector);
    const float away = length(pass.center - centre(at, pass.scale));
    const float step = pass.drag < 2 && away < 80.0f ? 0.0075f * away : pass.backStep;
    const Point back = centre(at) - (step * pass.timeStep) * v;
    return pass.dissipation * bilinear(pass.source, back * pass.texelSize, scalar);
}

float meaning(const Jacobi& pass, At at) {
    const FloatGrid& x = pass.x;
    return (scalar(x, {at.i - 1, at.j}) + scalar(x, {at.i + 1, at.j}) +
            scalar(x, {at.i, at.j - 1}) + scalar(x, {at.i, at.j + 1}) +
            pass.alpha * scalar(pass.b, at)) *
           pass.rbeta;
}

Point meaning(const SubtractGradient& pass, At at) {
    const FloatGrid& p = pass.pressure;
    const Point gradient{scalar(p, {at.i + 1, at.j}) - scalar(p, {at.i - 1, at.j}),
                         scalar(p, {at.i, at.j + 1}) - scalar(p, {at.i, at.j - 1})};
    return vector(pass.velocity, at) - pass.gradientScale * gradient;
}

float meaning(const ComputeDivergence& pass, At at) {
    const FloatGrid& v = pass.velocity;
    const float difference = vector(v, {at.i + 1, at.j}).x - vector(v, {at.i - 1, at.j}).x +
                             vector(v, {at.i, at.j + 1}).y - vector(v, {at.i, at.j - 1}).y;
    const bool isSink =
        length(pass.sourcePoint - corner(at, pass.cellToScreen)) < pass.sourceRadius;
    return difference * pass.halfInverseCellSize - (isSink ? pass.sourceStrength : 0.0f);
}

/// How far `p` lies along a stroke, and from the nearest point of its line.
template <class Pass>
std::pair<float, Point> strokePlace(const Pass& pass, Point p) {
    const float t = dot(p - pass.previous, pass.normal);
    return {t, p - (pass.previous + t * Point(pass.normal))};
}

float meaning(const AddInk& pass, At at) {
    const float a = scalar(pass.source, at);
    const Point p = centre(at, pass.cellToScreen);
    if (pass.mode != 2) {
        const float d = length(pass.current - p);
        return d < pass.radius ? a + pass.impulseDensity / (1 + d) : a;
    }
    const auto [t, away] = strokePlace(pass, p);
    const bool isInked = 0 < t && t < pass.len && length(away) < pass.radius;
    const float faded = std::exp(-dot(away, away) / (0.8f * pass.radius * pass.radius));
    return isInked ? a + pass.impulseDensity * faded : a;
}

Point meaning(const AddVelocity& pass, At at) {
    const Point p = centre(at, pass.cellToScreen);
    const auto [t, away] = strokePlace(pass, p);
    const bool isPushed = 0 < t && t < pass.length && length(away) < pass.radius;
    const Point push = (0.1f * length(away)) * (away + (pass.current - (p - away)));
    return isPushed ? vector(pass.velocity, at) + push : vector(pass.velocity, at);
}

template <class Pass>
void expectMeaning(const Pass& pass, float tolerance) {
    const int width = pass.output.width;
    const Cells actual = evaluateCells(pass, width, pass.output.height);
    for (std::size_t i = 0; i < actual.size(); ++i) {
        constexpr std::size_t floats = sizeof(meaning(pass, {0, 0})) / sizeof(float);
        const int cell = static_cast<int>(i / floats);
        const auto expected = meaning(pass, {cell % width, cell / width});
        float values[2];
        std::memcpy(values, &expected, sizeof expected);
        ASSERT_LE(std::abs(actual[i] - values[i % floats]), tolerance) << "float " << i;
    }
}

/// The seven passes on random grids of one size. A stroke runs across them to a touch near the
/// right edge, so that a row's last cells lie on both sides of each radius.
struct Passes {
    Passes(int width, int height, Against side, Fill fill)
        : random(static_cast<unsigned>(width * 1000 + height)),
          velocity(width, height, 2, side, fill, random),
          source(width, height, 2, side, fill, random),
          pressure(width, height, 1, side, fill, random),
          right(width, height, 1, side, fill, random),
          vectorOut(width, height, 2, side, fill, random),
          scalarOut(width, height, 1, side, fill, random) {
        const Point size{static_cast<float>(width), static_cast<float>(height)};
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

    void aim(Point scale, Point touch, Point start, float strokeRadius, float sinkRadius) {
        advect.cellToScreen = density.scale = divergence.cellToScreen = ink.cellToScreen =
            stroke.cellToScreen = scale;
        advect.touchPoint = density.center = divergence.sourcePoint = ink.current = stroke.current =
            touch;
        ink.previous = stroke.previous = start;
        ink.len = stroke.length = length(touch - start);
        ink.normal = stroke.normal = (1.0f / ink.len) * (touch - start);
        ink.radius = stroke.radius = strokeRadius;
        divergence.sourceRadius = sinkRadius;
    }
    void setMode(int mode) { advect.dragMode = density.drag = ink.mode = mode; }

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
    expectMeaning(passes.gradient, 1e-4f);
    expectMeaning(passes.divergence, 1e-4f);
    expectMeaning(passes.stroke, 5e-3f);
    for (const int mode : {-1, 0, 1, 2}) {
        passes.setMode(mode);
        expectMeaning(passes.advect, 1e-3f);
        expectMeaning(passes.density, 1e-3f);
        expectMeaning(passes.ink, 1e-3f);
    }
}

TEST(Operators, EachComputesWhatItsDefinitionSays) {
    for (const auto& [width, height] : {std::pair{23, 17}, {1, 1}, {1, 9}, {9, 1}, {2, 3}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        Passes passes(width, height, Against::back, {20.0f});
        expectMeanings(passes);
    }
}

TEST(Operators, RadiiAndSegmentsExcludeTheirEnds) {
    // Whole distances: each radius and both ends of the stroke meet corners or centres of cells.
    Passes passes(30, 30, Against::back, {20.0f});
    passes.aim({4.0f, 4.0f}, {35.0f, 40.0f}, {35.0f, 60.0f}, 5.0f, 25.0f);
    passes.density.center = {70.0f, 86.0f};
    passes.ink.current = {25.0f, 26.0f};
    expectMeanings(passes);
    passes.ink.previous = passes.stroke.previous = {22.0f, 25.0f};
    passes.ink.normal = passes.stroke.normal = {1.0f, 0.0f};
    passes.ink.len = passes.stroke.length = 8.0f;
    passes.ink.radius = passes.stroke.radius = 3.0f;
    expectMeanings(passes);
}

TEST(Operators, CoordinatesBeyondTheGridAreClampedAndNanIsZero) {
    Passes passes(23, 17, Against::back, {20.0f});
    fillRandomly(passes.velocity.block.elements(), {500.0f, true}, passes.random);
    expectMeaning(passes.advect, 1e-3f);
}

/// A kernel gives each cell the bits of `evaluate`.
template <class Pass, class Kernel>
void expectKernel(const Pass& pass, Kernel kernel) {
    const Cells expected = evaluateCells(pass, pass.output.width, pass.output.height);
    kernel(pass);
    ASSERT_TRUE(areSame({pass.output.data, expected.size()}, expected));
}

void compareKernels(int width, int height, Fill fill) {
    SCOPED_TRACE(testing::Message() << width << " x " << height << " wild " << fill.wild);
    for (const Against side : bothSides) {
        Passes passes(width, height, side, fill);
        for (const int mode : {0, 1, 2}) {
            passes.setMode(mode);
            expectKernel(passes.advect, advectVelocityKernel);
        }
        expectKernel(passes.divergence, computeDivergenceKernel);
        expectKernel(passes.gradient, subtractGradientKernel);
        expectKernel(passes.stroke, runAddVelocity);
        jacobiSweeps(passes.jacobi, 3);
    }
}

TEST(Kernels, GiveEveryCellTheBitsOfItsOperatorInsideTheGrids) {
    for (const Fill fill : {Fill{30.0f}, Fill{30.0f, true}, Fill{4000.0f}}) {
        for (int cell = 0; cell < 10 * 10; ++cell) {
            compareKernels(cell % 10, cell / 10, fill);
        }
        compareKernels(90, 160, fill);
        compareKernels(120, 213, fill);
    }
    for (int count = 1; count <= 512; ++count) {  // whose texel size is rounded
        for (const auto& [width, height] : {std::pair{count, 1}, {1, count}}) {
            Passes passes(width, height, Against::back, {30.0f});
            expectKernel(passes.gradient, subtractGradientKernel);
            expectKernel(passes.stroke, runAddVelocity);
        }
    }
}

}  // namespace
}  // namespace velmora::test
