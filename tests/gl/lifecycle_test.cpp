#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>

#include "scene.h"

// Sizes, textures and failures: what the library makes, keeps and deletes.

namespace gltest {
namespace {

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;
constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();

/// A scene whose frames draw nothing and whose velocity uploads are kept.
struct Flow : Scene {
    Flow() : Scene(screenWidth, screenHeight, true) {
        setUp();
        rasteriseNothing();
        recorder.textureUpload = [this](int width, int height, std::span<const std::uint8_t> rgba) {
            EXPECT_EQ(width, 45);
            EXPECT_EQ(height, 80);
            uploads.emplace_back(rgba.begin(), rgba.end());
        };
    }
    std::vector<Bytes> uploads;
};

TEST(Velocity, ReachesTheTextureOneFrameAfterItsStepWasStarted) {
    Flow flow;
    Bytes still;
    for (int cell = 0; cell < 45 * 80; ++cell) {
        still.insert(still.end(), {127, 0, 127, 0});
    }
    for (int frame = 0; frame < 5; ++frame) {
        if (frame == 3) {  // until then the touch is too near to the edges to move anything
            flow.setting(screenWidth, screenHeight, true);  // near an edge the source had shrunk
            flow.touch(120, 840, Down);
        }
        flow.draw();
        EXPECT_EQ(flow.uploads.back() == still, frame < 4) << "frame " << frame;
    }
    // The touch lies in cell (10, 10) of the grid, whose rows run upwards. A step spreads over 20
    // cells.
    EXPECT_TRUE(std::equal(still.begin() + 35 * 45 * 4, still.end(),
                           flow.uploads[4].begin() + 35 * 45 * 4));
}

TEST(Velocity, TheSameGestureGivesTheSameBytes) {
    std::vector<Bytes> runs[2];
    for (std::vector<Bytes>& run : runs) {
        Flow flow;
        std::srand(1);
        for (int frame = 0; frame < 40; ++frame) {
            flow.touch(100 + 8 * frame, 200 + frame * frame / 3, frame == 5 ? Down : Move);
            flow.touch(103 + 8 * frame, 200 + frame * frame / 3, Move);        // a drag
            flow.touch(104 + 8 * frame, 200 + frame * frame / 2, Move, 0.7f);  // of a known class
            flow.draw();
        }
        EXPECT_NE(flow.uploads.back(), flow.uploads.front());
        run = flow.uploads;
    }
    EXPECT_EQ(runs[0], runs[1]);
}

TEST(Sizes, TargetsFollowTheScreen) {
    const struct {
        int width, height;
        const char* velocity;
        bool isLying;
    } cases[] = {{11, 11, "0, 0", false},
                 {600, 600, "50, 50", false},
                 {960, 540, "80, 45", true},
                 {1085, 37, "90, 3", true},
                 {-540, 960, "-45, 80", false},
                 {1200000, 12, "100000, 1", true},  // more than any texture
                 {most, least, "178956970, -178956970", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height));
        Scene scene(c.width, c.height, true, 16, 16);
        scene.initBuffers();
        const Lines lines = scene.initGpu();
        for (const auto& [size, count] :
             {std::pair{std::string(c.velocity), 1}, {c.isLying ? "1024, 512" : "512, 1024", 2}}) {
            EXPECT_EQ(std::ranges::count(lines, "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, " + size +
                                                    ", 0, GL_RGBA, GL_UNSIGNED_BYTE, null)"),
                      count);
        }
    }
}

TEST(Sizes, SettingsAloneResizeNothing) {
    Flow flow;
    const int sizes[][2] = {{1080, 1920}, {60, 60}, {1920, 1080}, {0, 0}, {-7, 100000}};
    for (const auto& [width, height] : sizes) {
        flow.setting(width, height, true);
        for (int frame = 0; frame < 6; ++frame) {
            flow.touch(width / 2, height / 2 + 12 * frame, frame == 0 ? Down : Move);
            EXPECT_TRUE(std::ranges::none_of(flow.recordedFrame(), [](const std::string& line) {
                return line.starts_with("glGen");
            }));
        }
    }
}

struct Textures : testing::Test {
    Textures() { scene.setUp(); }
    /// The result of loading, with the library's calls on record and the pixels unlocked again.
    jint load(StandInBitmap loaded, int index) {
        jint result = 0;
        recorded([&] {
            result =
                native::LoadTextures(scene.env, nullptr, reinterpret_cast<jobject>(&loaded), index);
        });
        EXPECT_EQ(loaded.lockCount, 0);
        EXPECT_EQ(scene.recorder.alive[GlKind::texture].size(), 3u);
        return result;
    }
    Bytes pixels = Bytes(6 * 3 * 4);
    StandInBitmap bitmap{{5, 3, 5 * 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0}, pixels.data()};
    Scene scene{screenWidth, screenHeight, false};
};

TEST_F(Textures, WhatCannotBeLoadedLeavesTheSlot) {
    const auto expectRefused = [this](jint result, int index, auto change) {
        StandInBitmap other = bitmap;
        change(other);
        EXPECT_EQ(load(other, index), result);
        EXPECT_TRUE(scene.recorder.calls.empty());
    };
    expectRefused(-2, 1, [](StandInBitmap& b) { b.getInfoResult = -2; });
    expectRefused(-3, 1, [](StandInBitmap& b) { b.lockResult = -3; });
    expectRefused(-1, 1, [](StandInBitmap& b) { b.info.format = ANDROID_BITMAP_FORMAT_RGB_565; });
    expectRefused(-1, 1, [](StandInBitmap& b) { b.info.stride = 19; });
    for (const int index : {3, -1, most, least}) {
        expectRefused(-1, index, [](StandInBitmap&) {});
    }
}

TEST_F(Textures, PaddedRowsAreUploadedWithoutTheirPadding) {
    std::iota(pixels.begin(), pixels.end(), std::uint8_t{0});
    bitmap.info.stride = 6 * 4;
    Bytes tight;
    for (int row = 0; row < 3; ++row) {
        tight.insert(tight.end(), pixels.begin() + row * 24, pixels.begin() + row * 24 + 20);
    }
    // The last row may lack its padding: nothing past its pixels is the bitmap's.
    pixels.resize(2 * 24 + 20);
    pixels.shrink_to_fit();
    bitmap.pixels = pixels.data();
    EXPECT_EQ(load(bitmap, 2), 0);
    const auto upload =
        std::ranges::find(scene.recorder.calls, "glTexImage2D", &hostkit::GlCall::function);
    ASSERT_NE(upload, scene.recorder.calls.end());
    EXPECT_EQ(upload->bytes, tight);
    bitmap.unlockResult = -1;
    EXPECT_EQ(load(bitmap, 2), -1);
}

TEST(Failures, NothingIsLeftOfAShaderOrProgramThatFails) {
    const struct {
        std::string call;
        int calls;
        std::size_t shadersLeft;
        int links;
    } failing[] = {
        {"glCreateShader", 6, 5, 2}, {"glGetShaderiv", 6, 5, 2}, {"glGetProgramiv", 3, 6, 3}};
    for (const auto& f : failing) {
        for (int failure = 1; failure <= f.calls; ++failure) {
            SCOPED_TRACE(f.call + " " + std::to_string(failure));
            Scene scene(screenWidth, screenHeight, true);
            scene.recorder.refuse = [&](const char* function, int nth) {
                return function == f.call && nth == failure;
            };
            native::onInitUVHBuffer(scene.env, nullptr);
            recorded([&] { native::onInitGPU(scene.env, nullptr); });
            EXPECT_EQ(scene.recorder.alive[GlKind::shader].size(), f.shadersLeft);
            EXPECT_EQ(scene.recorder.alive[GlKind::program].size(), 2u);
            EXPECT_EQ(scene.recorder.count("glLinkProgram"), f.links);
        }
    }
}

}  // namespace
}  // namespace gltest
