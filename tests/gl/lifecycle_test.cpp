#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <random>
#include <set>

#include "scene.h"

// Sizes, textures, contexts and failures: what the library makes, keeps, deletes and survives.

namespace gltest {
namespace {

using hostkit::GlKind;
namespace native = hostkit::native;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

/// The velocity bytes that each frame uploads.
struct Uploads {
    explicit Uploads(Scene& scene) {
        scene.recorder.textureUpload = [this](int w, int h, std::span<const std::uint8_t> bytes) {
            width = w;
            height = h;
            frames.emplace_back(bytes.begin(), bytes.end());
        };
    }
    int width = 0, height = 0;
    std::vector<Bytes> frames;
};

Bytes stillVelocity(int cells) {
    Bytes still;
    for (int cell = 0; cell < cells; ++cell) {
        still.insert(still.end(), {127, 0, 127, 0});
    }
    return still;
}

TEST(Velocity, ReachesTheTextureOneFrameAfterItsStepWasStarted) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.rasteriseNothing();
    Uploads uploads(scene);
    const Bytes still = stillVelocity(45 * 80);
    // A touch at the corner is too near to the edges to move anything.
    for (int frame = 0; frame < 3; ++frame) {
        scene.draw();
    }
    scene.setting(screenWidth, screenHeight, true);  // near an edge the source had shrunk
    scene.touch(120, 840, Down);
    for (int frame = 3; frame < 5; ++frame) {
        scene.draw();
    }
    ASSERT_EQ(uploads.frames.size(), 5u);
    for (std::size_t frame = 0; frame < 4; ++frame) {
        EXPECT_EQ(uploads.frames[frame], still) << "frame " << frame;
    }
    // The touch lies in cell (10, 10) of the grid, whose rows run upwards. A step spreads over 20
    // cells.
    const std::span<const std::uint8_t> moved(uploads.frames[4]), rest(still);
    EXPECT_FALSE(std::ranges::equal(moved.first(20 * 45 * 4), rest.first(20 * 45 * 4)));
    EXPECT_TRUE(std::ranges::equal(moved.last(45 * 45 * 4), rest.last(45 * 45 * 4)));
}

TEST(Velocity, TheSameGestureGivesTheSameBytes) {
    std::vector<Bytes> first;
    for (int run = 0; run < 2; ++run) {
        Scene scene(screenWidth, screenHeight, true);
        scene.setUp();
        scene.rasteriseNothing();
        Uploads uploads(scene);
        std::srand(1);
        for (int frame = 0; frame < 40; ++frame) {
            scene.touch(100 + 8 * frame, 200 + frame * frame / 3, frame == 5 ? Down : Move);
            scene.touch(103 + 8 * frame, 200 + frame * frame / 3, Move);        // a drag
            scene.touch(104 + 8 * frame, 200 + frame * frame / 2, Move, 0.7f);  // of a known class
            scene.draw();
        }
        EXPECT_NE(uploads.frames.back(), uploads.frames.front());
        if (run == 0) {
            first = uploads.frames;
        }
        EXPECT_EQ(uploads.frames, first);
    }
}

/// The sizes of the targets that a set-up makes: "45, 80; 512, 1024; 512, 1024; ".
std::string targetSizes(Scene& scene) {
    const std::string before = "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, ";
    std::string sizes;
    for (const std::string& line : recorded([&] { native::onInitGPU(scene.env, nullptr); })) {
        if (line.starts_with(before)) {
            sizes += line.substr(before.size(), line.find(", 0, GL_RGBA, GL_UNS") - before.size()) +
                     "; ";
        }
    }
    return sizes;
}

TEST(Sizes, TargetsFollowTheScreenAndFramesSurviveAnySize) {
    constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    const std::string upright = "512, 1024; 512, 1024; ", lying = "1024, 512; 1024, 512; ";
    const struct {
        int width, height;
        std::string targets;
    } cases[] = {{1, 1, "0, 0; " + upright},
                 {11, 11, "0, 0; " + upright},
                 {100, 100, "8, 8; " + upright},
                 {540, 960, "45, 80; " + upright},
                 {960, 540, "80, 45; " + lying},
                 {600, 600, "50, 50; " + upright},
                 {1085, 37, "90, 3; " + lying},
                 {300, 12, "25, 1; " + lying},
                 {0, 0, "0, 0; " + upright},
                 {-540, 960, "-45, 80; " + upright},
                 {1200000, 12, "100000, 1; " + lying},  // more than any texture
                 {least, least, "-178956970, -178956970; " + upright},
                 {most, least, "178956970, -178956970; " + lying}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height));
        Scene scene(c.width, c.height, true, 16, 16);
        native::onInitUVHBuffer(scene.env, nullptr);
        EXPECT_EQ(targetSizes(scene), c.targets);
        scene.rasteriseNothing();
        for (int frame = 0; frame < 12; ++frame) {
            scene.touch(c.width / 2, c.height / 2 + 20 * frame, frame == 0 ? Down : Move);
            scene.draw();
        }
    }
}

TEST(Sizes, SettingsAloneResizeNothing) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.rasteriseNothing();
    Uploads uploads(scene);
    const int sizes[][2] = {{1080, 1920}, {60, 60}, {1920, 1080}, {0, 0}, {-7, 100000}, {540, 960}};
    for (const auto& [width, height] : sizes) {
        scene.setting(width, height, true);
        for (int frame = 0; frame < 6; ++frame) {
            scene.touch(width / 2, height / 2 + 12 * frame, frame == 0 ? Down : Move);
            const auto lines = scene.recordedFrame();
            EXPECT_EQ(lines.front(), "glViewport(0, 0, " + std::to_string(width) + ", " +
                                         std::to_string(height) + ")");
            EXPECT_EQ(uploads.width, 45);
            EXPECT_EQ(uploads.height, 80);
            EXPECT_TRUE(std::ranges::none_of(
                lines, [](const std::string& line) { return line.starts_with("glGen"); }));
        }
    }
    scene.setting(screenWidth, screenHeight, false);
    EXPECT_EQ(scene.recordedFrame().size(), 63u);
    scene.setting(screenWidth, screenHeight, true);
    scene.draw();
}

struct Textures : testing::Test {
    Textures() {
        scene.setUp();
        textures = scene.recorder.alive[GlKind::texture];
    }
    /// The result of loading, with the library's calls on record and the pixels unlocked again.
    jint load(StandInBitmap loaded, int index) {
        jint result = 0;
        recorded([&] {
            result =
                native::LoadTextures(scene.env, nullptr, reinterpret_cast<jobject>(&loaded), index);
        });
        EXPECT_EQ(loaded.lockCount, 0);
        return result;
    }
    Bytes pixels = Bytes(6 * 3 * 4);
    StandInBitmap bitmap{{5, 3, 5 * 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0}, pixels.data()};
    Scene scene{screenWidth, screenHeight, false};
    std::set<GLuint> textures;
};

TEST_F(Textures, WhatCannotBeLoadedLeavesTheSlot) {
    const auto changed = [this](auto change) {
        StandInBitmap other = bitmap;
        change(other);
        return other;
    };
    const auto noInfo = changed([](StandInBitmap& b) { b.getInfoResult = -2; });
    const auto noPixels = changed([](StandInBitmap& b) { b.lockResult = -3; });
    const auto otherFormat =
        changed([](StandInBitmap& b) { b.info.format = ANDROID_BITMAP_FORMAT_RGB_565; });
    const auto shortRows = changed([](StandInBitmap& b) { b.info.stride = 19; });
    EXPECT_EQ(load(noInfo, 1), -2);
    EXPECT_EQ(load(noPixels, 1), -3);
    EXPECT_TRUE(scene.recorder.calls.empty());
    for (const StandInBitmap& refused : {otherFormat, shortRows}) {
        EXPECT_LT(load(refused, 1), 0);
        EXPECT_TRUE(scene.recorder.calls.empty());
    }
    for (const int index :
         {3, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_LT(load(bitmap, index), 0);
        EXPECT_TRUE(scene.recorder.calls.empty());
    }
    EXPECT_EQ(scene.recorder.alive[GlKind::texture], textures);
}

TEST_F(Textures, LoadingAgainLeavesOneLiveTexture) {
    for (const int index : {0, 1, 2, 1}) {
        EXPECT_EQ(load(bitmap, index), 0);
        EXPECT_EQ(scene.recorder.alive[GlKind::texture].size(), 3u);
    }
    StandInBitmap stuck = bitmap;
    stuck.unlockResult = -1;
    EXPECT_EQ(load(stuck, 1), -1);
    EXPECT_EQ(scene.recorder.alive[GlKind::texture].size(), 3u);
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
}

/// Every object that the lines name, as "texture3", but those that they make.
std::set<std::string> usedObjects(const std::vector<std::string>& lines) {
    std::set<std::string> used;
    for (const std::string& line : lines) {
        if (line.find(") = ") == std::string::npos || line.starts_with("glGet")) {
            withObjects(line, [&](const std::string& object) {
                used.insert(object);
                return object;
            });
        }
    }
    return used;
}

/// Uses up the low names of a new context, so that none of the old context can be one of the new.
void spendNames() {
    GLuint names[64];
    glGenTextures(64, names);
    glGenBuffers(64, names);
    glGenFramebuffers(64, names);
    for (int i = 0; i < 64; ++i) {
        glCreateShader(GL_VERTEX_SHADER);
    }
}

TEST(ContextReplacement, NoNameOfTheOldContextIsUsed) {
    for (const bool ink : {true, false}) {
        Scene scene(screenWidth, screenHeight, ink);
        scene.recorder.programNames.clear();
        scene.setUp();
        scene.touch(300, 400, Down);
        scene.draw();
        scene.context.reset();
        scene.context.emplace(screenWidth, screenHeight);
        spendNames();
        const auto lines = recorded([&] {
            native::onInitUVHBuffer(scene.env, nullptr);
            native::onInitGPU(scene.env, nullptr);
            for (int index = 0; index < 3; ++index) {
                EXPECT_EQ(scene.load(smoothPicture(index), index), 0);
            }
            for (int frame = 0; frame < 3; ++frame) {
                scene.draw();
            }
        });
        for (const std::string& used : usedObjects(lines)) {
            const int name = std::stoi(used.substr(used.find_first_of("0123456789")));
            const bool isQuad =
                ink && used == "buffer" + std::to_string(scene.names.number("buffer", "quad"));
            EXPECT_TRUE(name > 64 || isQuad) << used;
        }
        EXPECT_EQ(
            std::ranges::count_if(lines, [](const auto& l) { return l.starts_with("glDelete"); }),
            ink);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        const Bytes pixels = scene.context->readPixels();
        EXPECT_NE(pixels[(480 * 540 + 270) * 4], 0);  // the water is drawn
    }
}

TEST(Failures, AFrameSurvivesAnyShaderOrProgramThatFails) {
    for (const auto& [call, failures] : std::map<std::string, int>{{"glGetShaderiv", 6},
                                                                   {"glCreateShader", 6},
                                                                   {"glGetProgramiv", 3},
                                                                   {"glCreateProgram", 3}}) {
        for (int failure = 1; failure <= failures; ++failure) {
            SCOPED_TRACE(call + " " + std::to_string(failure));
            Scene scene(screenWidth, screenHeight, true);
            scene.recorder.refuse = [failing = failure, name = call](const char* function,
                                                                     int nth) {
                return function == name && nth == failing;
            };
            recorded([&] {
                native::onInitUVHBuffer(scene.env, nullptr);
                native::onInitGPU(scene.env, nullptr);
            });
            const bool ofShader = call.ends_with("Shaderiv") || call.ends_with("Shader");
            EXPECT_EQ(scene.recorder.alive[GlKind::shader].size(), ofShader ? 5u : 6u);
            EXPECT_EQ(scene.recorder.alive[GlKind::program].size(), 2u);
            EXPECT_EQ(scene.recorder.count("glLinkProgram"),
                      ofShader || call == "glCreateProgram" ? 2 : 3);
            const bool isWater = failure <= failures / 3;
            glBindFramebuffer(GL_FRAMEBUFFER, 0);
            glClearColor(1, 0, 1, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            scene.touch(300, 400, Down);
            for (int frame = 0; frame < 3; ++frame) {
                scene.draw();
            }
            const Bytes pixels = scene.context->readPixels();
            EXPECT_EQ(pixels[(480 * 540 + 270) * 4], isWater ? 255 : 0);  // no picture: black water
            scene.recorder.refuse = nullptr;
            scene.initGpu();
            EXPECT_EQ(scene.recorder.alive[GlKind::program].size(), 3u);
        }
    }
}

TEST(Failures, AnyOrderOfCallsIsSurvived) {
    std::minstd_rand random(11);
    Scene scene(screenWidth, screenHeight, true);
    for (int call = 0; call < 300; ++call) {
        const int size = static_cast<int>(random() % 400);
        switch (random() % 8) {
            case 0:
                scene.setting(size, 400 - size, random() % 3 != 0);
                break;
            case 1:
                native::onInitUVHBuffer(scene.env, nullptr);
                break;
            case 2:
                native::onInitGPU(scene.env, nullptr);
                break;
            case 3:
                scene.load(smoothPicture(call), static_cast<int>(random() % 5) - 1);
                break;
            case 4:
                native::clearInkValue(scene.env, nullptr);
                break;
            case 5:
                scene.touch(size, size, static_cast<jint>(random() % 4));
                break;
            default:
                scene.rasteriseNothing();
                scene.draw();
        }
    }
    scene.setting(screenWidth, screenHeight, true);
    scene.setUp();
    EXPECT_EQ(scene.recordedFrame().size(), 232u);
}

}  // namespace
}  // namespace gltest
