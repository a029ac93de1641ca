#include <gtest/gtest.h>
#include <jni.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <vector>

#include "hostkit/instruments/checked_jni.h"
#include "hostkit/native.h"

// Tests the native methods of the water: which arrays they pin, what each argument means, and what they return.

namespace hostkit {
namespace {

constexpr int rows = 6;
constexpr int columns = 8;

struct WaterMethods : testing::TestWithParam<ArrayAccess> {
    jboolean move(bool detectCalm) {
        return native::move(jni.env(), nullptr, velocity, height, 2, 1, 6, 4, columns, 987,
                            detectCalm ? JNI_TRUE : JNI_FALSE, 0.5f, 0.25f);
    }
    void ripple(float strength) {
        native::ripple(jni.env(), nullptr, height, 80, 30, columns, rows, 0.0f, 2.5f, strength);
    }
    void initWaters(int vertices) {
        native::initWaters(jni.env(), nullptr, positions, indices, vertices, 8, 4, 2, 3);
    }
    float heightAt(std::size_t x, std::size_t y) const {
        return JniEnvironment::elements(height)[y * columns + x];
    }

    CheckedJni jni{{GetParam(), 4096}};
    jfloatArray velocity = jni.newFloatArray(rows * columns);
    jfloatArray height = jni.newFloatArray(rows * columns);
    jfloatArray positions = jni.newFloatArray(18);
    jshortArray indices = jni.newShortArray(12);
};

INSTANTIATE_TEST_SUITE_P(Arrays, WaterMethods,
                         testing::Values(ArrayAccess::direct, ArrayAccess::copy));

TEST_P(WaterMethods, InitWatersPassesOnEachArgument) {
    initWaters(6);
    EXPECT_TRUE(
        std::ranges::equal(JniEnvironment::elements(positions),
                           std::array{-4, 2, 0, -4, 0, 0, -4, -2, 0, 4, 2, 0, 4, 0, 0, 4, -2, 0}));
    EXPECT_TRUE(std::ranges::equal(JniEnvironment::elements(indices),
                                   std::array{0, 1, 4, 0, 4, 3, 1, 2, 5, 1, 5, 4}));
    std::ranges::fill(JniEnvironment::elements(positions), 9.0f);
    initWaters(5);
    EXPECT_EQ(JniEnvironment::elements(positions)[14], 0.0f);
    EXPECT_EQ(JniEnvironment::elements(positions)[15], 9.0f);
    EXPECT_TRUE(jni.checkGuards().empty());
}

TEST_P(WaterMethods, RipplePassesOnEachArgument) {
    // The touch is at cell (4, 3.5). A ripple of strength 4 is a cone with a radius of 3 cells, so the cells half a row
    // above and below the touch gain (3 - 0.5) * 4 = 10.
    ripple(4.0f);
    EXPECT_EQ(heightAt(4, 3), 10.0f);
    EXPECT_EQ(heightAt(4, 4), 10.0f);
}

TEST_P(WaterMethods, MovePassesOnEachArgument) {
    JniEnvironment::elements(height)[3 * columns + 5] = 16.0f;
    JniEnvironment::elements(velocity)[3 * columns + 5] = 8.0f;
    EXPECT_EQ(move(true), JNI_FALSE);
    // The cells to the left of and above the raised cell gain velocity. The cells to the right and below do not,
    // because they are outside the rectangle.
    const auto speeds = JniEnvironment::elements(velocity);
    EXPECT_EQ(speeds[3 * columns + 5], -4.0f);
    EXPECT_EQ(speeds[3 * columns + 4], 2.0f);
    EXPECT_EQ(speeds[2 * columns + 5], 2.0f);
    EXPECT_EQ(std::ranges::count(speeds, 0.0f), rows * columns - 3);
    EXPECT_GT(heightAt(5, 3), 6.0f);
    EXPECT_TRUE(jni.checkGuards().empty());
}

TEST_P(WaterMethods, MoveDetectsCalmOnlyIfAsked) {
    for (const bool isMoving : {false, true}) {
        for (const bool asked : {false, true}) {
            std::ranges::fill(JniEnvironment::elements(velocity), isMoving ? 0.0182f : 0.018f);
            EXPECT_EQ(move(asked), isMoving && asked ? JNI_FALSE : JNI_TRUE);
            std::ranges::fill(JniEnvironment::elements(height), 0.0f);
        }
    }
}

TEST_P(WaterMethods, PinInOrderAndReleaseInTheSameOrder) {
    jni.setLogging(true);
    move(true);
    ripple(1.0f);
    initWaters(6);
    const char* const pinned = "GetFloatArrayElements";
    const char* const released = "ReleaseFloatArrayElements";
    const std::vector<JniCall> expected = {{pinned, 1, 0},   {pinned, 2, 0},
                                           {released, 1, 0}, {released, 2, 0},
                                           {pinned, 2, 0},   {released, 2, 0},
                                           {pinned, 3, 0},   {"GetShortArrayElements", 4, 0},
                                           {released, 3, 0}, {"ReleaseShortArrayElements", 4, 0}};
    EXPECT_EQ(jni.calls(), expected);
    EXPECT_EQ(jni.pinned(), 0);
}

TEST_P(WaterMethods, DoNothingIfAnArrayCannotBePinned) {
    for (const jarray refused : std::initializer_list<jarray>{velocity, height}) {
        std::ranges::fill(JniEnvironment::elements(height), 9.0f);
        jni.refuse(refused);
        EXPECT_EQ(move(true), JNI_TRUE);
        EXPECT_EQ(std::ranges::count(JniEnvironment::elements(height), 9.0f), rows * columns);
    }
    ripple(1.0f);
    EXPECT_EQ(std::ranges::count(JniEnvironment::elements(height), 9.0f), rows * columns);
    for (const jarray refused : std::initializer_list<jarray>{positions, indices}) {
        jni.refuse(refused);
        initWaters(6);
        EXPECT_EQ(JniEnvironment::elements(positions)[0], 0.0f);
        EXPECT_EQ(JniEnvironment::elements(indices)[1], 0);
    }
    EXPECT_EQ(jni.pinned(), 0);
}

}  // namespace
}  // namespace hostkit
