#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <jni.h>

#include <cstddef>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/host/test_host.h"

// Tests the GL state that a host can observe: the textures and the target of each draw call, the objects that a set-up
// creates, and the bindings after a frame.

namespace gltest {
namespace {

using namespace testhost;
using hostkit::GlKind;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

GLint integer(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

std::string labelOf(GlKind kind, GLint name) {
    const auto& labels = hostkit::glRecorder().labels;
    const auto found = labels.find({kind, static_cast<GLuint>(name)});
    return found != labels.end() ? found->second : std::to_string(name);
}

GLint textureOn(GLenum unit) {
    const auto active = static_cast<GLenum>(integer(GL_ACTIVE_TEXTURE));
    glActiveTexture(unit);
    const GLint texture = integer(GL_TEXTURE_BINDING_2D);
    glActiveTexture(active);
    return texture;
}

std::string viewport() {
    GLint box[4];
    glGetIntegerv(GL_VIEWPORT, box);
    return std::to_string(box[0]) + " " + std::to_string(box[1]) + " " + std::to_string(box[2]) +
           "x" + std::to_string(box[3]);
}

/// Describes the textures and the target of the next draw call, as "PROGRAM: TEXTURES -> FRAMEBUFFER, X Y
/// WIDTHxHEIGHT".
std::string drawState() {
    std::string textures;
    for (GLenum unit = GL_TEXTURE0; unit <= GL_TEXTURE3; ++unit) {
        textures += labelOf(GlKind::texture, textureOn(unit)) + " ";
    }
    return labelOf(GlKind::program, integer(GL_CURRENT_PROGRAM)) + ": " + textures + "-> " +
           labelOf(GlKind::framebuffer, integer(GL_FRAMEBUFFER_BINDING)) + ", " + viewport();
}

/// Expects that no texture, framebuffer or vertex attribute is bound. Each pass must leave this state.
void expectNothingBound() {
    for (GLenum unit = GL_TEXTURE0; unit <= GL_TEXTURE3; ++unit) {
        EXPECT_EQ(textureOn(unit), 0);
    }
    EXPECT_EQ(integer(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(integer(GL_FRAMEBUFFER_BINDING), 0);
    for (GLuint location = 0; location < 4; ++location) {
        GLint isEnabled = 1;
        glGetVertexAttribiv(location, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &isEnabled);
        EXPECT_EQ(isEnabled, 0) << location;
    }
}

/// Returns the uploads and draw calls of a frame in their order. Also checks the GL state between the passes and after
/// the frame.
std::vector<std::string> stepsOfFrame(TestHost& host) {
    std::vector<std::string> steps;
    host.recorder.textureUpload = [&steps](int width, int height, auto) {
        steps.push_back(labelOf(GlKind::texture, integer(GL_TEXTURE_BINDING_2D)) + " takes " +
                        std::to_string(width) + "x" + std::to_string(height));
    };
    host.recorder.inside = [&steps](const std::string& function) {
        if (function.starts_with("glDraw")) {
            steps.push_back(drawState());
        } else if (function == "glUseProgram" && steps.size() > 1) {
            // This call selects the program of the next pass. The previous pass must have left nothing bound.
            SCOPED_TRACE("after " + steps.back());
            expectNothingBound();
        }
    };
    host.recordedFrame();
    host.recorder.textureUpload = nullptr;
    host.recorder.inside = nullptr;
    expectNothingBound();
    EXPECT_EQ(labelOf(GlKind::buffer, integer(GL_ELEMENT_ARRAY_BUFFER_BINDING)), "indices");
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    return steps;
}

std::vector<std::string> withFluidSteps(std::initializer_list<std::string> others) {
    const std::string forth = "advect: velocity inkA 0 0 -> inkB, 0 0 512x1024";
    const std::string back = "advect: velocity inkB 0 0 -> inkA, 0 0 512x1024";
    std::vector<std::string> steps = {"velocity takes 45x80", forth, back, forth, back};
    steps.insert(steps.end(), others);
    return steps;
}

void expectLinearAndClamped() {
    for (const auto& [parameter, expected] : {std::pair{GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE},
                                              {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE},
                                              {GL_TEXTURE_MIN_FILTER, GL_LINEAR},
                                              {GL_TEXTURE_MAG_FILTER, GL_LINEAR}}) {
        GLint found = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, static_cast<GLenum>(parameter), &found);
        EXPECT_EQ(found, expected);
    }
}

TEST(SetUp, CreatesItsObjectsAndLeavesTheScreenBound) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    for (const auto& [object, label] : host.recorder.labels) {
        if (object.first == GlKind::texture) {
            glBindTexture(GL_TEXTURE_2D, object.second);
            expectLinearAndClamped();
        }
    }
    EXPECT_EQ(integer(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(viewport(), "0 0 512x1024");
    EXPECT_EQ(integer(GL_BLEND_SRC_RGB), GL_SRC_ALPHA);
    EXPECT_EQ(integer(GL_BLEND_DST_RGB), GL_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// The library must set the locations of the attributes itself. Otherwise each driver would choose its own locations.
TEST(SetUp, BindsTheAttributesOfTheQuadBeforeItLinks) {
    TestHost host(screenWidth, screenHeight);
    host.setting();
    host.initBuffers();
    const std::string calls = host.initGpu();
    for (const std::string program : {"water", "advect", "impulse"}) {
        const auto link = calls.find("glLinkProgram(" + program);
        EXPECT_LT(calls.find("glBindAttribLocation(" + program + ", 0, \"vertex\")"), link);
        EXPECT_LT(calls.find("glBindAttribLocation(" + program + ", 1, \"texCoord\")"), link);
    }
}

TEST(SetUp, DeletesObjectsBeforeItReplacesThem) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    auto& alive = host.recorder.alive;
    const auto before = alive;
    host.recorder.after = [&] {
        for (const auto& [kind, names] : before) {
            EXPECT_LE(alive[kind].size(), names.size());
        }
    };
    host.initGpu();
    host.recorder.after = nullptr;
    for (const auto& [kind, names] : before) {
        EXPECT_EQ(alive[kind].size(), names.size());
    }
    EXPECT_EQ(host.recorder.strayDeletions, "");
}

TEST(SetUp, CreatesOneProgramIfInkIsDisabled) {
    TestHost host(screenWidth, screenHeight);
    host.setting(false);
    host.initBuffers();
    host.initGpu();
    EXPECT_EQ(host.recorder.alive[GlKind::program].size(), 1u);
    EXPECT_EQ(host.recorder.alive[GlKind::buffer].size(), 3u);
    EXPECT_TRUE(host.recorder.alive[GlKind::texture].empty());
    EXPECT_TRUE(host.recorder.alive[GlKind::framebuffer].empty());
}

TEST(SetUp, LeavesTheLastLoadedTextureBound) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    EXPECT_EQ(labelOf(GlKind::texture, integer(GL_TEXTURE_BINDING_2D)), "second");
}

TEST(InkFrame, UploadsAdvectsDepositsAndDrawsTheWater) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.touch(300, 400, Down);
    host.touch(300, 405, Move);
    host.touch(330, 440, Move);
    EXPECT_EQ(stepsOfFrame(host),
              withFluidSteps({"impulse: inkA 0 0 0 -> inkB, 0 0 512x1024",
                              "water: background reflection inkB 0 -> 0, 0 0 540x960"}));
}

TEST(InkFrame, IfThereIsNoStrokeAdvectsAndDrawsTheWater) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.arguments.useSecondBackground = true;
    EXPECT_EQ(stepsOfFrame(host),
              withFluidSteps({"water: second reflection inkA 0 -> 0, 0 0 540x960"}));
}

// Checks those uniforms that the tests of images and of gestures do not check.
TEST(InkFrame, PassesScreenTimeAndStrokeToTheShaders) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.touch(300, 400, Down);
    host.touch(300, 405, Move);
    host.touch(330, 440, Move);
    auto uniforms = host.uniformsOfFrame();
    for (const auto& [name, expected] :
         std::map<std::string, std::string>{{"advect.Scale", "540, 960"},
                                            {"advect.TimeStep", "0.005, 0.0028125"},
                                            {"impulse.Scale", "540, 960"},
                                            {"impulse.normal", "0.6, -0.8"},
                                            {"impulse.len", "50"},
                                            {"water.Scale", "0.0018518518, 0.0010416667"},
                                            {"water.uNUM_DETAILS_WIDTH", "5"},
                                            {"water.uNUM_DETAILS_HEIGHT", "4"},
                                            {"water.viewportHeight", "960"}}) {
        EXPECT_EQ(uniforms[name], expected) << name;
    }
}

TEST(InkFrame, TurnsOffTheBlendingOfTheHost) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    glEnable(GL_BLEND);
    host.draw();
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}

TEST(WaterFrame, DrawsOnlyTheWater) {
    TestHost host(screenWidth, screenHeight);
    host.setUp(false);
    host.touch(300, 400, Down);
    host.touch(340, 440, Move);
    for (const int indexCount : {72, 0}) {
        host.arguments.indexCount = indexCount;
        EXPECT_EQ(stepsOfFrame(host),
                  std::vector<std::string>{"water: background reflection 0 0 -> 0, 0 0 540x960"});
        EXPECT_EQ(host.recorder.count("glBufferData"), 3);
    }
}

TEST(HostArrays, ArePinnedInOrderAndReleasedWithWriteBack) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.jni.setLogging(true);
    host.draw();
    std::vector<hostkit::JniCall> expected;
    for (const std::string call : {"Get", "Release"}) {
        for (const jfloatArray array : {host.positions, host.heights, host.matrix}) {
            expected.push_back({call + "FloatArrayElements", JniEnvironment::id(array), 0});
        }
        expected.push_back({call + "ShortArrayElements", JniEnvironment::id(host.indices), 0});
    }
    EXPECT_EQ(host.jni.calls(), expected);
}

TEST(HostArrays, IfOneCannotBePinnedNothingIsDrawn) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.jni.setLogging(true);
    std::size_t pinnedBefore = 0;
    for (const jarray refused :
         std::initializer_list<jarray>{host.positions, host.heights, host.matrix, host.indices}) {
        host.jni.refuse(refused);
        host.jni.clearCalls();
        EXPECT_EQ(host.recordedFrame().find("glDraw"), std::string::npos);
        EXPECT_EQ(viewport(), "0 0 540x960");
        // If pinning an array fails, a Java exception is pending. The library must then release the arrays that are
        // pinned and pin no other array.
        EXPECT_EQ(host.jni.calls().size(), 2 * pinnedBefore++ + 1);
    }
    EXPECT_EQ(host.jni.pinned(), 0);
}

}  // namespace
}  // namespace gltest
