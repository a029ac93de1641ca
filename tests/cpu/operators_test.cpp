#include <array>

#include "solver/passes.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

struct Point {
    Point(double u, double v) : x(u), y(v) {}
    Point(Float2 p) : x(p.x), y(p.y) {}
    double x, y;
};
Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
Point operator*(Point a, Point b) {
    return {a.x * b.x, a.y * b.y};
}
Point operator*(double a, Point b) {
    return {a * b.x, a * b.y};
}
double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}

/// A cell by its column and row.
struct At {
    int i, j;
};
Point corner(At at, Float2 cellToScreen) {
    return Point(at.i, at.j) * cellToScreen;
}
Point centre(At at, Float2 cellToScreen = {1.0f, 1.0f}) {
    return Point(at.i + 0.5, at.j + 0.5) * cellToScreen;
}

// Cells beyond the grid repeat its edge.
int indexOf(const FloatGrid& grid, int i, int j) {
    return std::clamp(i, 0, grid.width - 1) + std::clamp(j, 0, grid.height - 1) * grid.width;
}
double scalar(const FloatGrid& grid, int i, int j) {
    return grid.data[indexOf(grid, i, j)];
}
Point vector(const FloatGrid& grid, int i, int j) {
    const float* cell = grid.data + 2 * indexOf(grid, i, j);
    return {cell[0], cell[1]};
}

/// The bilinear mix of `value(i, j)` at q, where 0 and 1 are the first and the last cell.
template <class Value>
auto bilinear(const FloatGrid& grid, Point q, Value value) {
    const double x = std::clamp(q.x, 0.0, 1.0) * (grid.width - 1);
    const double y = std::clamp(q.y, 0.0, 1.0) * (grid.height - 1);
    const int i = static_cast<int>(x);
    const int j = static_cast<int>(y);
    const double fx = x - i;
    const double fy = y - j;
    return ((1 - fx) * (1 - fy)) * value(grid, i, j) + (fx * (1 - fy)) * value(grid, i + 1, j) +
           ((1 - fx) * fy) * value(grid, i, j + 1) + (fx * fy) * value(grid, i + 1, j + 1);
}

// ---- What each pass computes at a cell, from its definition, in double.

Point meaning(const AdvectVelocity& pass, At at) {
    const Point back = centre(at) - pass.timeStep * vector(pass.velocity, at.i, at.j);
    const Point r = bilinear(pass.source, back * pass.texelSize, vector);
    const Point away = pass.touchPoint - corner(at, pass.cellToScreen);
    const bool isPushed = pass.dragMode > 0 && dot(away, away) < 625.0;
    return pass.dissipation * (isPushed ? r + (pass.dragMode - 1.5) * pass.touchDelta : r);
}

double meaning(const AdvectDensity& pass, At at) {
    const Point v = bilinear(pass.velocity, centre(at) * pass.texelSize, vector);
    const Point away = pass.center - centre(at, pass.scale);
    const bool isStill = pass.drag < 2 && dot(away, away) < 6400.0;
    const double step = isStill ? 0.0075 * std::sqrt(dot(away, away)) : double{pass.backStep};
    const Point back = centre(at) - (step * pass.timeStep) * v;
    return pass.dissipation * bilinear(pass.source, back * pass.texelSize, scalar);
}

double meaning(const Jacobi& pass, At at) {
    return (scalar(pass.x, at.i - 1, at.j) + scalar(pass.x, at.i + 1, at.j) +
            scalar(pass.x, at.i, at.j - 1) + scalar(pass.x, at.i, at.j + 1) +
            pass.alpha * scalar(pass.b, at.i, at.j)) *
           pass.rbeta;
}

Point meaning(const SubtractGradient& pass, At at) {
    const FloatGrid& p = pass.pressure;
    const Point gradient(scalar(p, at.i + 1, at.j) - scalar(p, at.i - 1, at.j),
                         scalar(p, at.i, at.j + 1) - scalar(p, at.i, at.j - 1));
    return vector(pass.velocity, at.i, at.j) - pass.gradientScale * gradient;
}

double meaning(const ComputeDivergence& pass, At at) {
    const FloatGrid& v = pass.velocity;
    const double divergence = (vector(v, at.i + 1, at.j).x - vector(v, at.i - 1, at.j).x +
                               vector(v, at.i, at.j + 1).y - vector(v, at.i, at.j - 1).y) *
                              pass.halfInverseCellSize;
    const Point away = pass.sourcePoint - corner(at, pass.cellToScreen);
    const bool isSink = std::sqrt(dot(away, away)) < pass.sourceRadius;
    return isSink ? divergence - pass.sourceStrength : divergence;
}

double meaning(const AddInk& pass, At at) {
    const double a = scalar(pass.source, at.i, at.j);
    const double radius2 = double{pass.radius} * pass.radius;
    const Point pc = centre(at, pass.cellToScreen);
    if (pass.mode != 2) {
        const double d = std::sqrt(dot(pass.current - pc, pass.current - pc));
        return d < pass.radius ? a + pass.impulseDensity / (1 + d) : a;
    }
    const double t = dot(pc - pass.previous, pass.normal);
    const Point away = pass.previous + t * pass.normal - pc;
    const bool isInked = 0 < t && t < pass.len && dot(away, away) < radius2;
    return isInked ? a + pass.impulseDensity * std::exp(-dot(away, away) / (0.8 * radius2)) : a;
}

Point meaning(const AddVelocity& pass, At at) {
    const Point v = vector(pass.velocity, at.i, at.j);
    const Point pc = centre(at, pass.cellToScreen);
    const double t = dot(pc - pass.previous, pass.normal);
    const Point e = pass.previous + t * pass.normal;
    const double d = std::sqrt(dot(pc - e, pc - e));
    const bool isPushed = 0 < t && t < pass.length && d < pass.radius;
    return isPushed ? v + (0.1 * d) * ((pc - e) + (pass.current - e)) : v;
}

// ----

template <class Pass>
constexpr int floatsOf = std::is_base_of_v<VectorPass, Pass> ? 2 : 1;

template <class Pass>
std::array<float, 2> evaluated(const Pass& pass, At at) {
    std::array<float, 2> out{};
    pass.evaluate({static_cast<float>(at.i) + 0.5f, static_cast<float>(at.j) + 0.5f}, out.data());
    return out;
}

template <class Pass>
void expectMeaning(const Pass& pass, double tolerance) {
    for (int cell = 0; cell < pass.output.width * pass.output.height; ++cell) {
        const At at{cell % pass.output.width, cell / pass.output.width};
        const auto actual = evaluated(pass, at);
        if constexpr (floatsOf<Pass> == 1) {
            ASSERT_NEAR(actual[0], meaning(pass, at), tolerance) << "cell " << cell;
        } else {
            ASSERT_NEAR(actual[0], meaning(pass, at).x, tolerance) << "cell " << cell;
            ASSERT_NEAR(actual[1], meaning(pass, at).y, tolerance) << "cell " << cell;
        }
    }
}

/// The seven passes on random grids of one size. A stroke runs across them to a touch near the
/// right edge, so that a row's last cells lie on both sides of each radius.
struct Passes {
    Passes(int width, int height, Against side, Fill fill, unsigned seed)
        : random(seed),
          velocity(width, height, 2, side, fill, random),
          source(width, height, 2, side, fill, random),
          pressure(width, height, 1, side, fill, random),
          right(width, height, 1, side, fill, random),
          vectorOut(width, height, 2, side, fill, random),
          scalarOut(width, height, 1, side, fill, random) {
        const auto columns = static_cast<float>(width);
        const auto rows = static_cast<float>(height);
        advect.output = gradient.output = stroke.output = vectorOut.grid;
        density.output = jacobi.output = divergence.output = ink.output = scalarOut.grid;
        advect.velocity = density.velocity = gradient.velocity = divergence.velocity =
            stroke.velocity = velocity.grid;
        advect.source = source.grid;
        density.source = ink.source = jacobi.x = gradient.pressure = pressure.grid;
        jacobi.b = right.grid;
        advect.texelSize = density.texelSize = jacobi.texelSize = gradient.texelSize =
            divergence.texelSize = ink.texelSize = stroke.texelSize = {1.0f / columns, 1.0f / rows};
        setScale({12.0f, 11.7f});
        advect.touchPoint = density.center = divergence.sourcePoint = ink.current =
            stroke.current = {12.0f * columns - 7.3f, 11.7f * rows * 0.4f};
        ink.previous = stroke.previous = {2.1f, 5.2f};
        const Float2 along{ink.current.x - ink.previous.x, ink.current.y - ink.previous.y};
        ink.len = stroke.length = std::sqrt(along.x * along.x + along.y * along.y);
        ink.normal = stroke.normal = {along.x / ink.len, along.y / ink.len};
        ink.radius = stroke.radius = 33.0f;
        ink.impulseDensity = 150.0f;
        advect.timeStep = density.timeStep = 0.25f;
        advect.dissipation = density.dissipation = 0.96f;
        advect.touchDelta = {17.0f, -9.0f};
        density.backStep = 1.1f;
        jacobi.alpha = -6.25f;
        jacobi.rbeta = 0.25f;
        gradient.gradientScale = 0.2f;
        divergence.halfInverseCellSize = 0.2f;
        divergence.sourceStrength = 50.0f;
        divergence.sourceRadius = 40.0f;
    }

    void setScale(Float2 pixels) {
        advect.cellToScreen = density.scale = divergence.cellToScreen = ink.cellToScreen =
            stroke.cellToScreen = pixels;
    }
    void setMode(int mode) { advect.dragMode = density.drag = ink.mode = mode; }
    bool areIntact() const {
        return velocity.block.isIntact() && source.block.isIntact() && pressure.block.isIntact() &&
               right.block.isIntact() && vectorOut.block.isIntact() && scalarOut.block.isIntact();
    }

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

TEST(Operators, EachComputesWhatItsDefinitionSays) {
    for (const auto& [width, height] : {std::pair{23, 17}, {1, 1}, {1, 9}, {9, 1}, {2, 3}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        Passes passes(width, height, Against::back, {20.0f}, 11);
        expectMeaning(passes.jacobi, 1e-4);
        expectMeaning(passes.gradient, 1e-4);
        expectMeaning(passes.divergence, 1e-4);
        expectMeaning(passes.stroke, 5e-3);
        for (const int mode : {-1, 0, 1, 2}) {
            passes.setMode(mode);
            expectMeaning(passes.advect, 1e-3);
            expectMeaning(passes.density, 1e-3);
            expectMeaning(passes.ink, 1e-3);
        }
    }
}

TEST(Operators, RadiiAndSegmentsExcludeTheirEnds) {
    // Exact distances: the corner of cell (5, 5) lies at (20, 20), its centre at (22, 22).
    constexpr At at{5, 5};
    Passes p(20, 20, Against::back, {0.0f}, 1);
    p.setScale({4.0f, 4.0f});
    p.setMode(1);
    p.divergence.sourceRadius = 25.0f;
    for (const auto& [x, isNear] : {std::pair{35.0f, false}, {34.0f, true}}) {
        p.advect.touchPoint = p.divergence.sourcePoint = {x, 40.0f};
        EXPECT_EQ(evaluated(p.advect, at)[0] != 0.0f, isNear);
        EXPECT_EQ(evaluated(p.divergence, at)[0] != 0.0f, isNear);
    }
    p.ink.radius = 5.0f;
    for (const auto& [x, density] : {std::pair{25.0f, 0.0f}, {22.0f, 30.0f}}) {
        p.ink.current = {x, 26.0f};
        EXPECT_EQ(evaluated(p.ink, at)[0], density);
    }
    p.setMode(2);
    p.ink.normal = p.stroke.normal = {1.0f, 0.0f};
    struct Stroke {
        float start, length, radius;
        bool reaches;
    };
    for (const Stroke& tried : {Stroke{20.0f, 10.0f, 4.0f, true},
                                {20.0f, 10.0f, 3.0f, false},
                                {22.0f, 8.0f, 4.0f, false},
                                {12.0f, 10.0f, 4.0f, false}}) {
        p.ink.previous = p.stroke.previous = {tried.start, 25.0f};
        p.ink.len = p.stroke.length = tried.length;
        p.ink.radius = p.stroke.radius = tried.radius;
        EXPECT_EQ(evaluated(p.stroke, at)[1] != 0.0f, tried.reaches);
        EXPECT_EQ(evaluated(p.ink, at)[0] != 0.0f, tried.reaches);
    }
}

// The samplers, through passes that add nothing to what they sample.

TEST(Samplers, NearestFindsEveryCellAndItsNeighboursOnScreensOfAnySize) {
    for (int count = 1; count <= 512; ++count) {
        std::vector<float> squares, still(static_cast<std::size_t>(count) * 2);
        for (int i = 0; i < count; ++i) {
            squares.push_back(static_cast<float>(i * i));
        }
        const float texel = 1.0f / static_cast<float>(count);
        for (const bool isRow : {true, false}) {
            const int width = isRow ? count : 1;
            const int height = isRow ? 1 : count;
            AddInk ink;
            SubtractGradient gradient;
            ink.source = gradient.pressure = {squares.data(), width, height};
            gradient.velocity = {still.data(), width, height};
            ink.texelSize = gradient.texelSize = {isRow ? texel : 1.0f, isRow ? 1.0f : texel};
            gradient.gradientScale = -1.0f;
            for (int i = 0; i < count; ++i) {
                const At at = isRow ? At{i, 0} : At{0, i};
                const int above = std::min(i + 1, count - 1);
                const int below = std::max(i - 1, 0);
                ASSERT_EQ(evaluated(ink, at)[0], static_cast<float>(i * i)) << count;
                ASSERT_EQ(evaluated(gradient, at)[isRow ? 0 : 1],
                          static_cast<float>(above * above - below * below))
                    << count;
            }
        }
    }
}

TEST(Samplers, CoordinatesAreClampedAndNanIsZero) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    std::mt19937 random(2);
    for (const Against side : bothSides) {
        const GuardedGrid pairs(5, 9, 2, side, {10.0f}, random);
        const GuardedGrid ones(5, 9, 1, side, {10.0f}, random);
        const GuardedGrid still(5, 9, 2, side, {0.0f}, random);
        AdvectVelocity advect;
        AdvectDensity density;
        AddInk nearest;
        advect.source = pairs.grid;
        density.source = nearest.source = ones.grid;
        advect.velocity = density.velocity = still.grid;
        advect.texelSize = density.texelSize = nearest.texelSize = {1.0f, 1.0f};
        advect.dissipation = density.dissipation = 1.0f;
        struct Case {
            Float2 uv;
            At at;
        };
        std::vector<Case> cases = {{{1.5f, infinity}, {4, 8}},
                                   {{-0.5f, -infinity}, {0, 0}},
                                   {{3e38f, -3e38f}, {4, 0}},
                                   {{std::numeric_limits<float>::quiet_NaN(), 1.0f}, {0, 8}}};
        for (int node = 0; node < 45; ++node) {
            const At at{node % 5, node / 5};
            cases.push_back(
                {{static_cast<float>(at.i) / 4.0f, static_cast<float>(at.j) / 8.0f}, at});
        }
        for (const Case& tried : cases) {
            SCOPED_TRACE(testing::Message() << tried.uv.x << ", " << tried.uv.y);
            float pair[2], one, near;
            advect.evaluate(tried.uv, pair);
            density.evaluate(tried.uv, &one);
            nearest.evaluate(tried.uv, &near);
            const std::ptrdiff_t cell = tried.at.i + tried.at.j * 5;
            EXPECT_EQ(pair[0], pairs.grid.data[2 * cell]);
            EXPECT_EQ(pair[1], pairs.grid.data[2 * cell + 1]);
            EXPECT_EQ(one, ones.grid.data[cell]);
            EXPECT_EQ(near, ones.grid.data[cell]);
        }
    }
}

/// A kernel gives each cell the bits of `evaluate`.
template <class Pass, class Kernel>
void expectKernel(const Pass& pass, Kernel kernel) {
    const FloatGrid& output = pass.output;
    std::vector<float> expected;
    for (int j = 0; j < output.height; ++j) {
        for (int i = 0; i < output.width; ++i) {
            const auto value = evaluated(pass, {i, j});
            expected.insert(expected.end(), value.begin(), value.begin() + floatsOf<Pass>);
        }
    }
    kernel(pass);
    EXPECT_TRUE(areSame({output.data, expected.size()}, expected));
}

/// Relaxes a pressure with a zero border; the scratch grid starts as anything.
void compareSweeps(Passes& passes, int count) {
    Jacobi& pass = passes.jacobi;
    const FloatGrid size = pass.x;
    const auto isBorder = [&](int i, int j) {
        return i == 0 || i == size.width - 1 || j == 0 || j == size.height - 1;
    };
    const auto relaxAll = [&](auto value) {
        std::vector<float> cells;
        for (int j = 0; j < size.height; ++j) {
            for (int i = 0; i < size.width; ++i) {
                cells.push_back(isBorder(i, j) ? 0.0f : value(i, j));
            }
        }
        return cells;
    };
    std::vector<float> expected =
        relaxAll([&](int i, int j) { return size.data[i + j * size.width]; });
    std::ranges::copy(expected, size.data);
    Jacobi oracle;
    oracle.b = pass.b;
    oracle.alpha = pass.alpha;
    oracle.rbeta = pass.rbeta;
    oracle.texelSize = pass.texelSize;
    for (int iteration = 0; iteration < count; ++iteration) {
        oracle.x = {expected.data(), size.width, size.height};
        expected = relaxAll([&](int i, int j) { return evaluated(oracle, {i, j})[0]; });
    }
    jacobiSweeps(pass, count);
    EXPECT_TRUE(areSame({pass.x.data, expected.size()}, expected)) << count << " sweeps";
}

void compareKernels(int width, int height, Against side, Fill fill) {
    SCOPED_TRACE(testing::Message() << width << " x " << height << " wild " << fill.wild);
    Passes passes(width, height, side, fill, static_cast<unsigned>(width * 1000 + height));
    for (const int mode : {-1, 0, 1, 2}) {
        passes.advect.dragMode = mode;
        expectKernel(passes.advect, advectVelocityKernel);
    }
    expectKernel(passes.divergence, computeDivergenceKernel);
    expectKernel(passes.gradient, subtractGradientKernel);
    expectKernel(passes.stroke, runAddVelocity);
    for (const int count : {0, 1, 2, 3, 5}) {
        compareSweeps(passes, count);
    }
    EXPECT_TRUE(passes.areIntact());
}

TEST(Kernels, GiveEveryCellTheBitsOfItsOperatorInsideTheGrids) {
    for (const Against side : bothSides) {
        for (const Fill fill : {Fill{30.0f}, Fill{30.0f, true}, Fill{4000.0f}}) {
            for (int width = 1; width <= 9; ++width) {
                for (int height = 1; height <= 9; ++height) {
                    compareKernels(width, height, side, fill);
                }
            }
            compareKernels(90, 160, side, fill);
            compareKernels(120, 213, side, fill);
        }
    }
}

TEST(Kernels, DoNothingWithoutAnOutputOrWithoutCells) {
    std::mt19937 random(4);
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 3}, {3, 0}}) {
        Passes passes(width, height, Against::back, {1.0f}, 1);
        for (const bool absent : {false, true}) {
            if (absent) {
                passes.advect.output = passes.gradient.output = passes.stroke.output = {};
                passes.divergence.output = passes.jacobi.output = {};
            }
            advectVelocityKernel(passes.advect);
            computeDivergenceKernel(passes.divergence);
            subtractGradientKernel(passes.gradient);
            runAddVelocity(passes.stroke);
            jacobiSweeps(passes.jacobi, 2);
        }
        EXPECT_TRUE(passes.areIntact());
    }
}

}  // namespace
}  // namespace velmora::test
