#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>
#include <span>

#include "scene.h"

// Every GL call of the library, in order, with its arguments and bytes.

namespace gltest {
namespace {

using hostkit::JniEnvironment;
namespace native = hostkit::native;

using Lines = std::vector<std::string>;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

void add(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

void addProgram(Lines& lines, const std::string& name) {
    for (const std::string stage : {"vert", "frag"}) {
        const std::string shader = name + "." + stage;
        const std::string type = stage == "vert" ? "GL_VERTEX_SHADER" : "GL_FRAGMENT_SHADER";
        add(lines, {"glCreateShader(" + type + ") = " + shader,
                    "glShaderSource(" + shader + ", source)", "glCompileShader(" + shader + ")",
                    "glGetShaderiv(" + shader + ", GL_COMPILE_STATUS) = 1"});
    }
    add(lines, {"glCreateProgram() = " + name, "glAttachShader(" + name + ", " + name + ".vert)",
                "glAttachShader(" + name + ", " + name + ".frag)",
                "glBindAttribLocation(" + name + ", 0, \"vertex\")",
                "glBindAttribLocation(" + name + ", 1, \"texCoord\")",
                "glLinkProgram(" + name + ")", "glGetProgramiv(" + name + ", GL_LINK_STATUS) = 1"});
}

void addProgramDeletion(Lines& lines, const std::string& name) {
    add(lines, {"glDeleteShader(" + name + ".vert)", "glDeleteShader(" + name + ".frag)",
                "glDeleteProgram(" + name + ")"});
}

void addTargetDeletion(Lines& lines, const std::string& name) {
    add(lines, {"glDeleteFramebuffers(1, " + name + ")", "glDeleteTextures(1, " + name + ")"});
}

void addTarget(Lines& lines, const std::string& name, int width, int height) {
    add(lines, {"glGenFramebuffers(1) = " + name, "glBindFramebuffer(GL_FRAMEBUFFER, " + name + ")",
                "glGenTextures(1) = " + name, "glBindTexture(GL_TEXTURE_2D, " + name + ")",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, " + std::to_string(width) + ", " +
                    std::to_string(height) + ", 0, GL_RGBA, GL_UNSIGNED_BYTE, null)",
                "glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, " +
                    name + ", 0)",
                "glClearColor(0, 0, 0, 0)", "glClear(GL_COLOR_BUFFER_BIT)",
                "glBindFramebuffer(GL_FRAMEBUFFER, 0)"});
}

/// The set-up of a context whose predecessor had a quad buffer, or, `again`, of one that is set up.
Lines inkSetUp(bool again) {
    Lines lines;
    for (const std::string program : {"water", "advect", "impulse"}) {
        if (again) {
            addProgramDeletion(lines, program);
        }
        addProgram(lines, program);
    }
    if (again) {
        addTargetDeletion(lines, "velocity");
    }
    addTarget(lines, "velocity", 45, 80);
    if (again) {
        addTargetDeletion(lines, "inkA");
        addTargetDeletion(lines, "inkB");
    }
    addTarget(lines, "inkA", 512, 1024);
    addTarget(lines, "inkB", 512, 1024);
    add(lines,
        {"glDeleteBuffers(1, quad)", "glGenBuffers(1) = quad",
         "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)", "glViewport(0, 0, 512, 1024)"});
    for (const std::string target : {"inkA", "inkB"}) {
        add(lines, {"glBindFramebuffer(GL_FRAMEBUFFER, " + target + ")", "glClearColor(0, 0, 0, 0)",
                    "glClear(GL_COLOR_BUFFER_BIT)"});
    }
    return lines;
}

void addUniform(Lines& lines, const std::string& program, const std::string& name,
                const std::string& type, const std::string& value, bool exists = true) {
    add(lines,
        {"glGetUniformLocation(" + program + ", \"" + name + "\")",
         "glUniform" + type + "(" + (exists ? program + "." + name : "-1") + ", " + value + ")"});
}

void addTexture(Lines& lines, int unit, const std::string& texture) {
    add(lines, {"glActiveTexture(GL_TEXTURE" + std::to_string(unit) + ")",
                "glBindTexture(GL_TEXTURE_2D, " + texture + ")"});
}

void addUnbinding(Lines& lines) {
    for (const int unit : {3, 2, 1, 0}) {
        addTexture(lines, unit, "0");
    }
}

void addQuad(Lines& lines, const std::string& program) {
    add(lines, {"glBindBuffer(GL_ARRAY_BUFFER, quad)",
                "glBufferData(GL_ARRAY_BUFFER, 32, data, GL_STATIC_DRAW)",
                "glEnableVertexAttribArray(" + program + ".vertex)",
                "glVertexAttribPointer(" + program + ".vertex, 2, GL_SHORT, GL_FALSE, 8, 0)",
                "glEnableVertexAttribArray(" + program + ".texCoord)",
                "glVertexAttribPointer(" + program + ".texCoord, 2, GL_SHORT, GL_FALSE, 8, 4)",
                "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)",
                "glDisableVertexAttribArray(" + program + ".vertex)",
                "glDisableVertexAttribArray(" + program + ".texCoord)"});
    addUnbinding(lines);
    add(lines, {"glBindFramebuffer(GL_FRAMEBUFFER, 0)", "glDisable(GL_BLEND)"});
}

/// The first part of an ink frame after one that left these: the touch, as "x, y" with y up, the
/// drag mode, the size of the backward step and the dissipation.
void addFluidStep(Lines& lines, const std::string& touch, int drag, float step, float dissipation) {
    add(lines,
        {"glViewport(0, 0, 540, 960)", "glBindTexture(GL_TEXTURE_2D, velocity)",
         "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 45, 80, 0, GL_RGBA, GL_UNSIGNED_BYTE, data)",
         "glViewport(0, 0, 512, 1024)"});
    for (int pass = 0; pass < 4; ++pass) {
        add(lines, {"glUseProgram(advect)"});
        addUniform(lines, "advect", "Scale", "2f", "540, 960");
        addUniform(lines, "advect", "TimeStep", "2f",
                   text(static_cast<float>(0.9 * 0.25 / 45)) + ", " +
                       text(static_cast<float>(0.9 * 0.25 / 80)));
        addUniform(lines, "advect", "Dissipation", "1f", text(dissipation));
        addUniform(lines, "advect", "BackwardStepSize", "1f", text(step));
        addUniform(lines, "advect", "center", "2f", touch);
        addUniform(lines, "advect", "drag", "1i", std::to_string(drag));
        addUniform(lines, "advect", "SourceTexture", "1i", "1");
        add(lines,
            {std::string("glBindFramebuffer(GL_FRAMEBUFFER, ") + (pass % 2 ? "inkA)" : "inkB)")});
        addTexture(lines, 0, "velocity");
        addTexture(lines, 1, pass % 2 ? "inkB" : "inkA");
        addQuad(lines, "advect");
    }
}

/// The stroke of the frames below: a fast one from (300, 400) to (330, 440), y down.
void addStroke(Lines& lines) {
    add(lines, {"glViewport(0, 0, 512, 1024)", "glUseProgram(impulse)"});
    addUniform(lines, "impulse", "current", "2f", "330, 520");
    addUniform(lines, "impulse", "previous", "2f", "300, 560");
    addUniform(lines, "impulse", "normal", "2f", text(0.6f) + ", " + text(-0.8f));
    addUniform(lines, "impulse", "len", "1f", "50");
    addUniform(lines, "impulse", "Radius", "1f", "30");
    addUniform(lines, "impulse", "ImpulseDensity", "1f", "40");
    addUniform(lines, "impulse", "Scale", "2f", "540, 960");
    addUniform(lines, "impulse", "mode", "1i", "2");
    addUniform(lines, "impulse", "Source", "1i", "0");
    add(lines, {"glBindFramebuffer(GL_FRAMEBUFFER, inkB)"});
    addTexture(lines, 0, "inkA");
    addQuad(lines, "impulse");
}

std::string absorption(float channel) {
    const double offset = static_cast<double>(0.001f);
    const float color = static_cast<float>(static_cast<double>(channel) + 0.05);
    return text(static_cast<float>((1.5 - offset) / static_cast<double>(color) - 1.0));
}

void addWaterDraw(Lines& lines, const Scene& scene, const std::string& shownInk) {
    const FrameArguments& a = scene.arguments;
    const bool ink = scene.inkEnabled;
    add(lines, {"glViewport(0, 0, 540, 960)", "glUseProgram(water)"});
    // The compiler drops the uniforms that no result needs.
    addUniform(lines, "water", "uMESH_SIZE_WIDTH", "1f", "24");
    addUniform(lines, "water", "uMESH_SIZE_HEIGHT", "1f", "36");
    addUniform(lines, "water", "uNUM_DETAILS_WIDTH", "1f", "5", false);
    addUniform(lines, "water", "uNUM_DETAILS_HEIGHT", "1f", "4", false);
    addUniform(lines, "water", "uRefractiveIndex", "1f", text(a.refractiveIndex));
    add(lines,
        {"glGetAttribLocation(water, \"aPosition\")", "glGetAttribLocation(water, \"aHeights\")"});
    std::string matrix;
    for (const float value : JniEnvironment::elements(scene.matrix)) {
        matrix += (matrix.empty() ? "" : ", ") + text(value);
    }
    addUniform(lines, "water", "uMVPMatrix", "Matrix4fv", "1, GL_FALSE, [" + matrix + "]");
    add(lines,
        {"glBindBuffer(GL_ARRAY_BUFFER, 0)", "glBindBuffer(GL_ARRAY_BUFFER, positions)",
         "glBufferData(GL_ARRAY_BUFFER, 240, data, GL_STATIC_DRAW)",
         "glBindBuffer(GL_ARRAY_BUFFER, 0)", "glBindBuffer(GL_ARRAY_BUFFER, heights)",
         "glBufferData(GL_ARRAY_BUFFER, 240, data, GL_STATIC_DRAW)",
         "glBindBuffer(GL_ARRAY_BUFFER, 0)", "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices)",
         "glBufferData(GL_ELEMENT_ARRAY_BUFFER, " + std::to_string(a.indexCount * 2) +
             ", data, GL_STATIC_DRAW)",
         "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)", "glBindBuffer(GL_ARRAY_BUFFER, heights)",
         "glVertexAttribPointer(water.aHeights, 3, GL_FLOAT, GL_FALSE, 0, 0)",
         "glEnableVertexAttribArray(water.aHeights)", "glBindBuffer(GL_ARRAY_BUFFER, positions)",
         "glVertexAttribPointer(water.aPosition, 3, GL_FLOAT, GL_FALSE, 0, 0)",
         "glEnableVertexAttribArray(water.aPosition)"});
    if (ink) {
        addUniform(lines, "water", "Scale", "2f", text(1.0f / 540.0f) + ", " + text(1.0f / 960.0f));
        addUniform(
            lines, "water", "ink_color", "3f",
            absorption(a.inkRed) + ", " + absorption(a.inkGreen) + ", " + absorption(a.inkBlue));
        addUniform(lines, "water", "intensity", "1f", text(0.02f));
        addTexture(lines, 2, shownInk);
        addUniform(lines, "water", "Density", "1i", "2");
    }
    addUniform(lines, "water", "alphaRatio1", "1f", text(a.alphaRatio1Scale * a.alpha));
    addUniform(lines, "water", "fresnelRatio", "1f", text(a.fresnelRatio));
    addUniform(lines, "water", "specularRatio", "1f", text(a.specularRatio));
    addUniform(lines, "water", "exponent", "1f", text(a.exponent));
    addUniform(lines, "water", "viewportHeight", "1f", "960", false);
    addTexture(lines, 0, a.useSecondBackground ? "second" : "background");
    addUniform(lines, "water", "sBGTexture", "1i", "0");
    addTexture(lines, 1, "sheen");
    addUniform(lines, "water", "sWaterTexture", "1i", "1");
    add(lines,
        {"glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices)",
         "glDrawElements(GL_TRIANGLES, " + std::to_string(a.indexCount) + ", GL_UNSIGNED_SHORT, 0)",
         "glDisableVertexAttribArray(water.aPosition)",
         "glDisableVertexAttribArray(water.aHeights)"});
    addUnbinding(lines);
}

std::string printed(const Lines& lines) {
    std::string all;
    for (const std::string& line : lines) {
        all += line + "\n";
    }
    return all;
}

Bytes bytesOf(std::span<const std::byte> elements) {
    const auto* const first = reinterpret_cast<const std::uint8_t*>(elements.data());
    return {first, first + elements.size()};
}

/// The bytes of the buffer uploads of the frame on record: the quad once a pass, then the mesh.
void expectUploads(const Scene& scene, int quads) {
    const short quad[] = {-1, -1, 0, 0, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 1, 1};
    std::vector<Bytes> expected(static_cast<std::size_t>(quads),
                                bytesOf(std::as_bytes(std::span(quad))));
    expected.push_back(bytesOf(std::as_bytes(JniEnvironment::elements(scene.positions))));
    expected.push_back(bytesOf(std::as_bytes(JniEnvironment::elements(scene.heights))));
    expected.push_back(bytesOf(std::as_bytes(JniEnvironment::elements(scene.indices))));
    expected.back().resize(static_cast<std::size_t>(scene.arguments.indexCount) * 2);
    std::vector<Bytes> uploaded;
    for (const hostkit::GlCall& call : scene.recorder.calls) {
        if (call.function == "glBufferData") {
            uploaded.push_back(call.bytes);
        }
    }
    EXPECT_EQ(uploaded, expected);
}

TEST(RecordedCalls, MeshBuffersAreMadeAndNothingElse) {
    Scene scene(screenWidth, screenHeight, true);
    for (int time = 0; time < 2; ++time) {
        const Lines lines = recorded([&] { native::onInitUVHBuffer(scene.env, nullptr); });
        scene.names.learn(lines, {"positions", "heights", "indices"});
        EXPECT_EQ(scene.names.translate(lines),
                  (Lines{"glGenBuffers(1) = positions", "glGenBuffers(1) = heights",
                         "glGenBuffers(1) = indices"}));
    }
    EXPECT_EQ(scene.recorder.alive[hostkit::GlKind::buffer].size(), 6u);
}

TEST(RecordedCalls, SetUpBuildsOnceAndReplacesAfterwards) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();  // so that there is a quad buffer, whatever ran before
    native::onInitUVHBuffer(scene.env, nullptr);
    for (const bool again : {false, true}) {
        scene.initGpu();
        EXPECT_EQ(printed(scene.names.translate(scene.recorder.lines())), printed(inkSetUp(again)));
    }
    EXPECT_EQ(scene.recorder.alive[hostkit::GlKind::program].size(), 6u);  // 3 of them forgotten

    scene.setting(screenWidth, screenHeight, false);
    native::onInitUVHBuffer(scene.env, nullptr);
    for (const bool again : {false, true}) {
        Lines expected;
        if (again) {
            addProgramDeletion(expected, "water");
        }
        addProgram(expected, "water");
        scene.initGpu();
        EXPECT_EQ(printed(scene.names.translate(scene.recorder.lines())), printed(expected));
    }
}

TEST(RecordedCalls, TexturesAreUploadedWithTheirParameters) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    const Lines labels = {"sheen", "background", "second"};
    for (int time = 0; time < 2; ++time) {
        native::onInitUVHBuffer(scene.env, nullptr);
        for (int index = 0; index < 6; ++index) {
            const std::string name = labels[static_cast<std::size_t>(index % 3)];
            const Bytes picture = smoothPicture(index + time);
            const Lines lines = recorded([&] { EXPECT_EQ(scene.load(picture, index % 3), 0); });
            Lines expected;
            if (index >= 3) {
                expected.push_back("glDeleteTextures(1, " + name + ")");
            }
            EXPECT_EQ(scene.names.translate({lines.front()}).front(),
                      index >= 3 ? expected.front() : lines.front());
            scene.names.learn(lines, {name});
            add(expected,
                {"glGenTextures(1) = " + name, "glBindTexture(GL_TEXTURE_2D, " + name + ")",
                 "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 32, 32, 0, GL_RGBA, GL_UNSIGNED_BYTE, "
                 "data)",
                 "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                 "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
                 "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                 "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)"});
            EXPECT_EQ(printed(scene.names.translate(lines))
                          .substr(index >= 3 ? printed({expected[0]}).size() : 0),
                      printed(Lines(expected.begin() + (index >= 3), expected.end())));
            for (const hostkit::GlCall& call : scene.recorder.calls) {
                EXPECT_TRUE(call.function != "glTexImage2D" || call.bytes == picture);
            }
        }
    }
}

TEST(RecordedCalls, InkFrameWithAndWithoutAStroke) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.touch(300, 400, Down);
    scene.touch(300, 405, Move);
    scene.touch(330, 440, Move);
    Lines expected;
    addFluidStep(expected, "330, 520", 0, 1.0f, 0.96f);
    addStroke(expected);
    addWaterDraw(expected, scene, "inkB");
    EXPECT_EQ(printed(scene.recordedFrame()), printed(expected));
    expectUploads(scene, 5);
    std::cout << "GL calls of an ink frame with a stroke: " << scene.recorder.calls.size() << "\n";

    scene.draw();  // a stroke without length brings inkA back to the front
    scene.touch(340, 440, Up);
    scene.touch(0, 0, Cancel);
    scene.touch(340, 450, Up);
    expected.clear();
    addFluidStep(expected, "340, 510", 2, 1.0f, 0.99f);
    scene.arguments.useSecondBackground = true;
    addWaterDraw(expected, scene, "inkA");
    EXPECT_EQ(printed(scene.recordedFrame()), printed(expected));
    expectUploads(scene, 4);
    std::cout << "GL calls of an ink frame without a stroke: " << scene.recorder.calls.size()
              << "\n";
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, WaterOnlyFrame) {
    Scene scene(screenWidth, screenHeight, false);
    scene.setUp();
    scene.touch(300, 400, Down);
    scene.touch(340, 440, Move);
    for (const int indexCount : {72, 0}) {
        scene.arguments.indexCount = indexCount;
        Lines expected = {"glViewport(0, 0, 540, 960)"};
        addWaterDraw(expected, scene, "");
        EXPECT_EQ(printed(scene.recordedFrame()), printed(expected));
        expectUploads(scene, 0);
    }
    std::cout << "GL calls of a water-only frame: " << scene.recorder.calls.size() << "\n";
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, ArraysArePinnedInOrderAndReleasedWithWriteBack) {
    for (const bool ink : {false, true}) {
        Scene scene(screenWidth, screenHeight, ink);
        scene.setUp();
        scene.jni.setLogging(true);
        scene.draw();
        const int floats[] = {JniEnvironment::id(scene.positions),
                              JniEnvironment::id(scene.heights), JniEnvironment::id(scene.matrix)};
        std::vector<hostkit::JniCall> expected;
        for (const std::string call : {"Get", "Release"}) {
            for (const int array : floats) {
                expected.push_back({call + "FloatArrayElements", array, 0});
            }
            expected.push_back({call + "ShortArrayElements", JniEnvironment::id(scene.indices), 0});
        }
        EXPECT_EQ(scene.jni.calls(), expected);
        EXPECT_EQ(scene.jni.pinned(), 0);
    }
}

}  // namespace
}  // namespace gltest
