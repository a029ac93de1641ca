#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "hostkit/jni_environment.h"
#include "hostkit/native.h"

namespace hostkit {
namespace {

constexpr std::size_t guard = 4096;  // elements, wider than any row of these tests
constexpr float unwritten = 12345.0f;

// ---- initWaters

struct Mesh {
    int width, height;  // mesh units
    int columns, rows;
};

struct MeshArrays {
    MeshArrays() { reset(); }
    void reset() {
        std::ranges::fill(JniEnvironment::elements(positions), unwritten);
        std::ranges::fill(JniEnvironment::elements(indices), jshort{-1});
    }
    void init(int vertexCount, const Mesh& mesh) {
        native::initWaters(jni.env(), nullptr, positions, indices, vertexCount, mesh.width,
                           mesh.height, mesh.columns, mesh.rows);
    }

    JniEnvironment jni{{ArrayAccess::direct, guard}};
    jfloatArray positions = jni.newFloatArray(3 * 65536);
    jshortArray indices = jni.newShortArray(6 * 65536);
};

/// The first vertex that is not where its column and row by integer division put it, or -1; beyond
/// `count` vertices nothing may be written.
int misplacedVertex(std::span<const float> positions, int count, const Mesh& mesh) {
    const auto width = static_cast<float>(mesh.width);
    const auto height = static_cast<float>(mesh.height);
    const float stepX = width / static_cast<float>(mesh.columns - 1);
    const float stepY = height / static_cast<float>(mesh.rows - 1);
    for (int i = 0; i < static_cast<int>(positions.size() / 3); ++i) {
        const float* at = &positions[static_cast<std::size_t>(i) * 3];
        const float x = static_cast<float>(i / mesh.rows) * stepX - width * 0.5f;
        const float y = height * 0.5f - static_cast<float>(i % mesh.rows) * stepY;
        const bool isRight = i < count
                                 ? at[0] == x && at[1] == y && at[2] == 0.0f
                                 : std::all_of(at, at + 3, [](float f) { return f == unwritten; });
        if (!isRight) {
            return i;
        }
    }
    return -1;
}

TEST(InitWaters, VerticesLieInTheirColumnsAndRowsHoweverTall) {
    std::vector<Mesh> meshes = {{20, 36, 2, 32768}, {20, 36, 3, 21845},    {7, 5, 2, 32767},
                                {16, 9, 32768, 2},  {1, 1, 21845, 3},      {9, 16, 5, 13107},
                                {9, 16, 256, 256},  {1080, 1920, 6, 10922}};
    for (int rows = 2; rows <= 600; ++rows) {
        meshes.push_back({rows % 7 + 1, rows % 40 + 1, 65536 / rows, rows});
    }
    MeshArrays arrays;
    for (const Mesh& mesh : meshes) {
        arrays.init(mesh.columns * mesh.rows, mesh);
        const auto positions = JniEnvironment::elements(arrays.positions);
        const auto used = static_cast<std::size_t>(mesh.columns * mesh.rows) * 3;
        ASSERT_EQ(misplacedVertex(positions.first(used), mesh.columns * mesh.rows, mesh), -1)
            << mesh.columns << " x " << mesh.rows;
    }
    EXPECT_TRUE(arrays.jni.checkGuards().empty());
}

TEST(InitWaters, WritesAsManyVerticesAsAsked) {
    const Mesh mesh{12, 20, 5, 7};
    MeshArrays arrays;
    for (const int count : {-5, 0, 1, 2, 3, 4, 6, 7, 8, 13, 14, 15, 33, 34, 35}) {
        arrays.reset();
        arrays.init(count, mesh);
        const auto positions = JniEnvironment::elements(arrays.positions).first(3 * 64);
        EXPECT_EQ(misplacedVertex(positions, count, mesh), -1) << count;
    }
    EXPECT_TRUE(arrays.jni.checkGuards().empty());
}

TEST(InitWaters, QuadsJoinTrueNeighboursRowByRowFromTheTop) {
    MeshArrays arrays;
    for (const Mesh& mesh : {Mesh{2, 2, 2, 2},
                             {3, 3, 3, 3},
                             {4, 4, 2, 7},
                             {4, 4, 7, 2},
                             {9, 16, 61, 108},
                             {16, 9, 108, 61},
                             {1, 1, 2, 32768},
                             {1, 1, 32768, 2},
                             {4, 4, 256, 256}}) {
        arrays.reset();
        arrays.init(mesh.columns * mesh.rows, mesh);
        const auto indices = JniEnvironment::elements(arrays.indices);
        // Column and row of the corners: top left, bottom left, bottom right, then top left, bottom
        // right, top right; with y up both run counter-clockwise.
        constexpr int corners[6][2] = {{0, 0}, {0, 1}, {1, 1}, {0, 0}, {1, 1}, {1, 0}};
        std::size_t next = 0;
        for (int row = 0; row < mesh.rows - 1; ++row) {
            for (int column = 0; column < mesh.columns - 1; ++column) {
                for (const auto& corner : corners) {
                    const int vertex = static_cast<std::uint16_t>(indices[next++]);
                    ASSERT_EQ(vertex / mesh.rows, column + corner[0]) << "index " << next - 1;
                    ASSERT_EQ(vertex % mesh.rows, row + corner[1]) << "index " << next - 1;
                }
            }
        }
        for (; next < indices.size(); ++next) {
            ASSERT_EQ(indices[next], -1) << "index " << next;
        }
    }
    EXPECT_TRUE(arrays.jni.checkGuards().empty());
}

TEST(InitWaters, SmallMeshesHaveTheseIndices) {
    struct Case {
        Mesh mesh;
        std::vector<jshort> indices;
    };
    const Case cases[] = {
        {{1, 1, 2, 2}, {0, 1, 3, 0, 3, 2}},
        {{1, 1, 3, 3}, {0, 1, 4, 0, 4, 3, 3, 4, 7, 3, 7, 6, 1, 2, 5, 1, 5, 4, 4, 5, 8, 4, 8, 7}},
        {{1, 1, 1, 5}, {}},
        {{1, 1, 5, 1}, {}},
        {{1, 1, 0, 5}, {}},
        {{1, 1, -3, -4}, {}}};
    MeshArrays arrays;
    for (const Case& tried : cases) {
        arrays.reset();
        arrays.init(0, tried.mesh);
        std::vector<jshort> expected(6 * 65536, -1);
        std::ranges::copy(tried.indices, expected.begin());
        EXPECT_TRUE(std::ranges::equal(JniEnvironment::elements(arrays.indices), expected))
            << tried.mesh.columns << " x " << tried.mesh.rows;
    }
    EXPECT_TRUE(arrays.jni.checkGuards().empty());
}

// ---- ripple

struct Touch {
    int areaWidth, areaHeight, columns, rows;
    float x, y, strength;
};

struct Range {
    int begin, end;
};

Range boxRange(float centre, int count) {
    return {centre > 5.0f ? static_cast<int>(std::floor(centre - 3.0f)) : 2,
            centre < static_cast<float>(count) - 5.0f ? static_cast<int>(std::floor(centre + 4.0f))
                                                      : count - 1};
}

void rippleOracle(std::span<float> grid, const Touch& touch) {
    const auto columns = static_cast<float>(touch.columns);
    const auto rows = static_cast<float>(touch.rows);
    const float cx = (touch.x / static_cast<float>(touch.areaWidth) + 0.5f) * columns;
    const float cy = (touch.y / static_cast<float>(touch.areaHeight) + 0.5f) * rows;
    const Range xs = boxRange(cx, touch.columns);
    const Range ys = boxRange(cy, touch.rows);
    for (int row = ys.begin; row < ys.end; ++row) {
        for (int column = xs.begin; column < xs.end; ++column) {
            const float dx = cx - static_cast<float>(column);
            const float dy = cy - static_cast<float>(row);
            const float t = 3.0f - std::sqrt(dx * dx + dy * dy);
            if (t > 0.0f) {
                grid[static_cast<std::size_t>(row * touch.columns + column)] += t * touch.strength;
            }
        }
    }
}

struct RippleGrid {
    explicit RippleGrid(int cells) : grid(jni.newFloatArray(static_cast<std::size_t>(cells))) {}
    std::span<float> cells() const { return JniEnvironment::elements(grid); }
    void touch(const Touch& t) {
        native::ripple(jni.env(), nullptr, grid, t.areaWidth, t.areaHeight, t.columns, t.rows, t.x,
                       t.y, t.strength);
    }
    JniEnvironment jni{{ArrayAccess::direct, guard}};
    jfloatArray grid;
};

TEST(Ripple, EveryTouchAddsTheConeOfItsBox) {
    std::mt19937 random(5);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (const auto& [columns, rows] :
         {std::pair{3, 3}, {4, 9}, {9, 7}, {12, 11}, {60, 107}, {107, 60}}) {
        RippleGrid ripple(columns * rows);
        std::vector<float> expected(ripple.cells().size());
        for (int i = 0; i < 800; ++i) {
            // Up to six cells beyond the grid, in quarter cells and on whole ones.
            const auto coordinate = [&](int count) {
                return static_cast<float>(below((count + 12) * 4) - (count + 12) * 2) / 4.0f;
            };
            const Touch touch{2 * columns,
                              3 * rows,
                              columns,
                              rows,
                              2.0f * coordinate(columns),
                              3.0f * coordinate(rows),
                              static_cast<float>(below(9) - 4) * 0.3f};
            ripple.touch(touch);
            rippleOracle(expected, touch);
            ASSERT_TRUE(std::ranges::equal(ripple.cells(), expected)) << "touch " << i;
        }
        EXPECT_TRUE(ripple.jni.checkGuards().empty());
    }
}

TEST(Ripple, ConesHaveTheirPeakAtTheTouchAndSpareTheEdges) {
    constexpr int size = 20;  // a square grid on an area of its own size: cell = touch + 10
    struct Gain {
        int column, row;
        double gain;
    };
    struct Case {
        float x, y, strength;
        std::vector<Gain> gains;
    };
    const double root2 = std::sqrt(2.0);
    const Case cases[] = {
        {0.0f,
         0.0f,
         2.0f,
         {{10, 10, 6},
          {9, 10, 4},
          {11, 10, 4},
          {10, 9, 4},
          {10, 11, 4},
          {13, 10, 0},
          {10, 7, 0},
          {7, 10, 0},
          {10, 13, 0},
          {11, 11, 2 * (3 - root2)}}},
        {0.0f, 0.0f, -1.0f, {{10, 10, -3}, {12, 10, -1}}},
        {-9.0f, -9.0f, 1.0f, {{2, 1, 0}, {1, 2, 0}, {1, 1, 0}, {0, 0, 0}, {2, 2, 3 - root2}}},
        {10.0f, 10.0f, 1.0f, {{19, 18, 0}, {18, 19, 0}, {19, 19, 0}, {18, 18, 3 - 2 * root2}}},
        {8.0f, 0.0f, 1.0f, {{18, 10, 3}, {19, 10, 0}, {17, 10, 2}}},
        {0.0f, 8.0f, 1.0f, {{10, 18, 3}, {10, 19, 0}, {10, 17, 2}}}};
    for (const Case& tried : cases) {
        RippleGrid ripple(size * size);
        for (int touches = 1; touches <= 2; ++touches) {
            ripple.touch({size, size, size, size, tried.x, tried.y, tried.strength});
            for (const Gain& cell : tried.gains) {
                const float value =
                    ripple.cells()[static_cast<std::size_t>(cell.row * size + cell.column)];
                EXPECT_NEAR(static_cast<double>(value), touches * cell.gain, 1e-5)
                    << cell.column << ' ' << cell.row;
            }
        }
    }
}

TEST(Ripple, TouchesOffTheGridOrWithoutAPlaceChangeNothing) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int size = 20;
    RippleGrid ripple(size * size);
    std::ranges::fill(ripple.cells(), unwritten);
    for (const float away : {-11.5f, 12.0f, -1e9f, 1e9f, 3e38f, -3e38f, infinity, -infinity, nan}) {
        ripple.touch({size, size, size, size, away, 0.0f, 1.0f});
        ripple.touch({size, size, size, size, 0.0f, away, 1.0f});
        ripple.touch({size, size, size, size, away, away, 1.0f});
    }
    for (const float anywhere : {0.0f, 1.0f, -1.0f}) {
        ripple.touch({0, size, size, size, anywhere, 0.0f, 1.0f});
        ripple.touch({size, 0, size, size, 0.0f, anywhere, 1.0f});
        for (const int none : {2, 1, 0, -1, least}) {
            ripple.touch({size, size, none, size, anywhere, 0.0f, 1.0f});
            ripple.touch({size, size, size, none, 0.0f, anywhere, 1.0f});
        }
        ripple.touch({most, least, size, 0, anywhere, anywhere, 1.0f});
    }
    EXPECT_EQ(std::ranges::count(ripple.cells(), unwritten), size * size);
    ripple.touch({size, size, size, size, 0.0f, 0.0f, infinity});
    ripple.touch({size, size, size, size, 0.0f, 0.0f, nan});
    EXPECT_EQ(std::ranges::count(ripple.cells(), unwritten), size * size - 25);
    EXPECT_TRUE(ripple.jni.checkGuards().empty());
}

// ---- move

struct MoveArrays {
    jboolean move(bool detectCalm, jfloat damping, jfloat waveSpeed) {
        return native::move(jni.env(), nullptr, velocity, height, 1, 1, 4, 4, 5, 987,
                            detectCalm ? JNI_TRUE : JNI_FALSE, damping, waveSpeed);
    }
    JniEnvironment jni{{ArrayAccess::copy, guard}};
    jfloatArray velocity = jni.newFloatArray(25);
    jfloatArray height = jni.newFloatArray(25);
};

TEST(Move, WorkedCaseOfOneRaisedCell) {
    MoveArrays water;
    JniEnvironment::elements(water.height)[12] = 1.0f;
    EXPECT_EQ(water.move(true, 1.0f, 0.25f), JNI_FALSE);
    constexpr double velocities[25] = {0,    0, 0, 0, 0,    0, 0, 0.25, 0, 0, 0, 0.25, -1,
                                       0.25, 0, 0, 0, 0.25, 0, 0, 0,    0, 0, 0, 0};
    constexpr double heights[25] = {
        0,          0, 0,        0,         0,        0, 0.00900000, 0.232162,   0.00867892,
        0,          0, 0.232162, 0.0173578, 0.232469, 0, 0,          0.00867892, 0.232469,
        0.00836887, 0, 0,        0,         0,        0, 0};
    for (std::size_t i = 0; i < 25; ++i) {
        EXPECT_EQ(static_cast<double>(JniEnvironment::elements(water.velocity)[i]), velocities[i]);
        // Half a unit of the sixth digit.
        const double digit =
            heights[i] == 0.0 ? 0.0 : std::pow(10.0, std::floor(std::log10(heights[i])) - 5);
        EXPECT_NEAR(static_cast<double>(JniEnvironment::elements(water.height)[i]), heights[i],
                    0.51 * digit);
    }
    EXPECT_TRUE(water.jni.checkGuards().empty());
}

TEST(Move, TellsCalmOnlyWhenAsked) {
    for (const bool moving : {false, true}) {
        for (const bool asked : {false, true}) {
            MoveArrays water;
            JniEnvironment::elements(water.velocity)[18] = moving ? 0.0091f : 0.009f;
            const bool calm = water.move(asked, 1.0f, 0.25f) != JNI_FALSE;
            EXPECT_EQ(calm, !(moving && asked));
        }
    }
}

TEST(WaterMethods, PinInOrderAndWriteBackInTheSameOrder) {
    MoveArrays water;
    const jshortArray indices = water.jni.newShortArray(6);
    const jfloatArray positions = water.jni.newFloatArray(12);
    water.jni.setLogging(true);
    water.move(true, 1.0f, 0.25f);
    native::ripple(water.jni.env(), nullptr, water.height, 5, 5, 5, 5, 0.0f, 0.0f, 1.0f);
    native::initWaters(water.jni.env(), nullptr, positions, indices, 4, 1, 1, 2, 2);
    const char* const pinned = "GetFloatArrayElements";
    const char* const released = "ReleaseFloatArrayElements";
    const std::vector<JniCall> expected = {{pinned, 1, 0},   {pinned, 2, 0},
                                           {released, 1, 0}, {released, 2, 0},
                                           {pinned, 2, 0},   {released, 2, 0},
                                           {pinned, 4, 0},   {"GetShortArrayElements", 3, 0},
                                           {released, 4, 0}, {"ReleaseShortArrayElements", 3, 0}};
    EXPECT_EQ(water.jni.calls(), expected);
    EXPECT_EQ(water.jni.pinned(), 0);
}

}  // namespace
}  // namespace hostkit
