#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <jni.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <string>

#include "tests/robust/stage.h"

// Counts the GL names that the library creates and deletes. After failures, repeated set-ups and replaced contexts, no
// name may be left over, and no name may be deleted twice.

namespace robust {
namespace {

using hostkit::GlKind;

/// Numbers of textures, buffers, framebuffers, shaders and programs that exist.
using Counts = std::array<std::size_t, 5>;

Counts alive() {
    auto& names = hostkit::glRecorder().alive;
    return {names[GlKind::texture].size(), names[GlKind::buffer].size(),
            names[GlKind::framebuffer].size(), names[GlKind::shader].size(),
            names[GlKind::program].size()};
}

/// Makes call number `nth` of a GL function fail.
void refuse(const std::string& function, int nth) {
    hostkit::glRecorder().refuse = [=, calls = 0](const char* name, int) mutable {
        return name == function && ++calls == nth;
    };
}

TEST(GlNames, AFailedSetUpLeavesNone) {
    const struct {
        std::string function;
        int calls;
        Counts left;
        int links;
    } failures[] = {
        {"glCreateShader", 6, {4, 4, 3, 5, 2}, 2},    {"glGetShaderiv", 6, {4, 4, 3, 5, 2}, 2},
        {"glCreateProgram", 3, {4, 4, 3, 6, 2}, 2},   {"glGetProgramiv", 3, {4, 4, 3, 6, 2}, 3},
        {"glGenFramebuffers", 3, {4, 4, 2, 6, 3}, 3}, {"glGenTextures", 3, {3, 4, 3, 6, 3}, 3},
        {"glGenBuffers", 1, {4, 3, 3, 6, 3}, 3}};
    Stage stage;
    stage.setUp();
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    for (const auto& failure : failures) {
        for (int nth = 1; nth <= failure.calls; ++nth) {
            SCOPED_TRACE(failure.function + " " + std::to_string(nth));
            refuse(failure.function, nth);
            Stage::paint();
            stage.initGpu();
            recorder.refuse = nullptr;
            EXPECT_EQ(Stage::pixel(5), magenta)
                << "if an ink target is missing, the library must not clear the screen instead";
            EXPECT_EQ(alive(), failure.left);
            EXPECT_EQ(recorder.count("glLinkProgram"), failure.links);
            stage.tap(Down);
            stage.draw(2);
            stage.initGpu();
            EXPECT_EQ(alive(), (Counts{4, 4, 3, 6, 3}));
            EXPECT_EQ(recorder.strayDeletions, "");
        }
    }
    stage.tap(Cancel);
    stage.tap(Down);
    stage.draw(2);
    EXPECT_EQ(stage.pixelOfFrame(5), background);
    EXPECT_NE(stage.pixelOfFrame(70), background);
}

TEST(GlNames, NothingIsDrawnIfAMeshBufferIsMissing) {
    for (int nth = 1; nth <= 3; ++nth) {
        Stage stage;
        refuse("glGenBuffers", nth);
        stage.setUp();
        EXPECT_EQ(stage.pixelOfFrame(5), magenta);
        stage.setUp();
        EXPECT_EQ(stage.pixelOfFrame(5), background);
    }
}

TEST(GlNames, NamesOfALostContextAreNotBoundInTheNextOne) {
    for (int nth = 1; nth <= 3; ++nth) {
        Stage stage;
        stage.setUp();
        stage.newContext();
        refuse("glGenBuffers", nth);
        stage.setUp();
        EXPECT_EQ(stage.pixelOfFrame(5), magenta)
            << "the water must not be drawn from a buffer of the lost context";
    }
    Stage stage;
    stage.setUp();
    refuse("glGenBuffers", 1);
    stage.initGpu();
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    recorder.record([&stage] { stage.draw(); });
    EXPECT_EQ(recorder.count("glDrawArrays"), 0)
        << "the ink passes must draw nothing, because the quad buffer is deleted";
    EXPECT_EQ(recorder.count("glDrawElements"), 1);
    refuse("glGenTextures", 1);
    stage.load(background, 1);
    stage.load(background, 1);
    EXPECT_EQ(recorder.strayDeletions, "");
}

TEST(GlNames, AMissingTargetDoesNotChangeTheScreen) {
    for (int nth = 1; nth <= 3; ++nth) {
        Stage stage;
        refuse("glGenFramebuffers", nth);
        stage.setUp();
        // All indices of the mesh are 0, so the water covers no pixel.
        std::ranges::fill(JniEnvironment::elements(stage.indices), jshort{0});
        stage.tap(Down);
        for (int frame = 0; frame < 6; ++frame) {
            EXPECT_EQ(stage.pixelOfFrame(70), magenta);
        }
    }
}

TEST(GlNames, NoneLeaksInAnyOrderOfSetUps) {
    constexpr Counts most = {3 + 3, 3 + 1, 3, 6, 3};
    std::minstd_rand random(5);
    Stage stage;
    stage.rasterise(1);
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    recorder.refuse = [&](const char*, int) { return random() % 64 == 0; };
    int contexts = 1;
    // The library keeps the GL name of its quad buffer after a context loss, and the next set-up deletes this name in
    // the new context. This test accepts one such deletion for each new context.
    bool isQuadStale = false;
    for (int call = 0; call < 500; ++call) {
        switch (random() % 8) {
            case 0:
                stage.width = 100 + static_cast<int>(random() % 500);
                stage.setting(random() % 4 != 0);
                break;
            case 1:
            case 2:
                stage.initGpu();
                break;
            case 3:
                stage.load(background, static_cast<int>(random() % 3));
                break;
            case 4:
                stage.tap(static_cast<jint>(random() % 3));
                break;
            case 5:
                if (random() % 4 == 0) {  // GL names of a lost context are void
                    stage.newContext();
                    recorder.alive.clear();
                    stage.initBuffers();
                    isQuadStale = true;
                    ++contexts;
                }
                break;
            default:
                stage.draw();
        }
        if (isQuadStale && recorder.strayDeletions.starts_with("glDeleteBuffers")) {
            recorder.strayDeletions.erase(0, recorder.strayDeletions.find('\n') + 1);
            isQuadStale = false;
        }
        ASSERT_EQ(recorder.strayDeletions, "") << "call " << call;
        const Counts now = alive();
        for (std::size_t kind = 0; kind < now.size(); ++kind) {
            ASSERT_LE(now[kind], most[kind]) << "of kind " << kind << ", call " << call;
        }
    }
    EXPECT_GT(contexts, 10);
}

}  // namespace
}  // namespace robust
