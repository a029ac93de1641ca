#include <gtest/gtest.h>
#include <jni.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string>

#include "tests/host/test_host.h"

// Tests the sizes and textures that the library keeps from one call to the next.

namespace gltest {
namespace {

using namespace testhost;
using hostkit::GlKind;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

TEST(Settings, DoNotResizeAnythingByThemselves) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.rasterise(0);
    const int sizes[][2] = {{1080, 1920}, {60, 60}, {1920, 1080}, {0, 0}, {-7, 100000}};
    for (const auto& [width, height] : sizes) {
        host.setting(width, height, true);
        for (int frame = 0; frame < 6; ++frame) {
            host.touch(width / 2, height / 2 + 12 * frame, frame == 0 ? Down : Move);
            EXPECT_EQ(host.recordedFrame().find("glGen"), std::string::npos);
        }
    }
}

TEST(Settings, GiveTargetsOfTheRightSizeForAnyScreen) {
    const struct {
        int width, height;
        const char *velocity, *ink;
    } cases[] = {{1085, 37, "90, 3", "1024, 512"},
                 {600, 600, "50, 50", "512, 1024"},
                 {11, 960, "0, 80", "512, 1024"},
                 {960, 11, "80, 0", "1024, 512"},
                 {49163, 12, "4096, 1", "1024, 512"},
                 // No grid is possible for these screen sizes, so there is no velocity target.
                 {49164, 12, nullptr, "1024, 512"},
                 {-12, 960, nullptr, "512, 1024"},
                 {960, -12, nullptr, "1024, 512"},
                 {INT_MAX, INT_MIN, nullptr, "1024, 512"}};
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.rasterise(0);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height));
        host.setting(c.width, c.height, true);
        const std::string calls = host.initGpu();
        for (const char* const size : {c.velocity, c.ink}) {
            const std::string image = "GL_RGBA, " + std::string(size ? size : "") + ", 0, GL_RGBA";
            EXPECT_EQ(calls.find(image) != std::string::npos, size != nullptr);
        }
        EXPECT_EQ(host.recorder.count("glTexImage2D"), c.velocity ? 3 : 2);
        host.draw();
        host.draw();
    }
}

TEST(Shaders, EachFragmentShaderBeginsWithItsPrecision) {
    for (const bool ink : {false, true}) {
        TestHost host(screenWidth, screenHeight);
        host.setting(ink);
        host.initBuffers();
        host.initGpu();
        for (const hostkit::GlCall& call : host.recorder.calls) {
            if (call.text.find(".frag, source") != std::string::npos) {
                const std::string text(call.bytes.begin(), call.bytes.end());
                EXPECT_TRUE(text.starts_with("precision mediump float;")) << call.text;
            }
        }
        EXPECT_EQ(host.recorder.count("glShaderSource"), ink ? 6 : 2);
    }
}

struct Textures : testing::Test {
    Textures() { host.setUp(false); }
    /// Loads a bitmap and returns the result of LoadTextures. Records the GL calls, and expects that the library
    /// unlocks the pixels.
    jint load(StandInBitmap loaded, int index) {
        jint result = 0;
        host.recorder.record([&] { result = host.load(loaded, index); });
        EXPECT_EQ(loaded.lockCount, 0);
        EXPECT_EQ(host.recorder.alive[GlKind::texture].size(), 3u);
        return result;
    }
    Bytes pixels = Bytes(6 * 3 * 4);
    StandInBitmap bitmap{{5, 3, 5 * 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0}, pixels.data()};
    TestHost host{screenWidth, screenHeight};
};

TEST_F(Textures, ABitmapThatCannotBeLoadedDoesNotChangeTheSlot) {
    const auto expectRefused = [this](jint result, int index, auto change) {
        StandInBitmap other = bitmap;
        change(other);
        EXPECT_EQ(load(other, index), result);
        EXPECT_TRUE(host.recorder.calls.empty());
    };
    expectRefused(-2, 1, [](StandInBitmap& b) { b.getInfoResult = -2; });
    expectRefused(-3, 1, [](StandInBitmap& b) { b.lockResult = -3; });
    expectRefused(-1, 1, [](StandInBitmap& b) { b.info.format = ANDROID_BITMAP_FORMAT_RGB_565; });
    expectRefused(-1, 1, [](StandInBitmap& b) { b.info.stride = 19; });
    for (const int index : {3, -1, INT_MAX, INT_MIN}) {
        expectRefused(-1, index, [](StandInBitmap&) {});
    }
}

TEST_F(Textures, ThePaddingOfRowsIsNotUploaded) {
    std::iota(pixels.begin(), pixels.end(), std::uint8_t{0});
    bitmap.info.stride = 6 * 4;
    Bytes tight;
    for (int row = 0; row < 3; ++row) {
        tight.insert(tight.end(), pixels.begin() + row * 24, pixels.begin() + row * 24 + 20);
    }
    // A bitmap's memory can end at its last pixel, because the last row needs no padding. This test uses such memory,
    // so that a sanitizer finds a read beyond the last pixel.
    pixels.resize(2 * 24 + 20);
    pixels.shrink_to_fit();
    bitmap.pixels = pixels.data();
    EXPECT_EQ(load(bitmap, 2), 0);
    const auto upload =
        std::ranges::find(host.recorder.calls, "glTexImage2D", &hostkit::GlCall::function);
    ASSERT_NE(upload, host.recorder.calls.end());
    EXPECT_EQ(upload->bytes, tight);
    bitmap.unlockResult = -1;
    EXPECT_EQ(load(bitmap, 2), -1);
}

TEST_F(Textures, ABitmapThatReportsOnlyItsSizeIsTightlyPacked) {
    std::iota(pixels.begin(), pixels.end(), std::uint8_t{0});
    bitmap.info = {5, 3, 0, ANDROID_BITMAP_FORMAT_NONE, 0};
    EXPECT_EQ(load(bitmap, 1), 0);
    const auto upload =
        std::ranges::find(host.recorder.calls, "glTexImage2D", &hostkit::GlCall::function);
    ASSERT_NE(upload, host.recorder.calls.end());
    EXPECT_EQ(upload->bytes, Bytes(pixels.begin(), pixels.begin() + 5 * 3 * 4));
}

}  // namespace
}  // namespace gltest
