#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/host/test_host.h"

// Every GL call of the library, in order, with its arguments and bytes.

namespace gltest {
namespace {

using namespace testhost;
using hostkit::GlKind;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

/// Expected calls, a line each; put together with +.
using Lines = std::string;

Lines call(const std::string& function, const std::string& arguments,
           const std::string& result = "") {
    return function + "(" + arguments + ")" + (result.empty() ? "" : " = " + result) + "\n";
}

Lines setUniform(const std::string& program, const std::string& name, const std::string& type,
                 const std::string& value) {
    return call("glGetUniformLocation", program + ", \"" + name + "\"") +
           call("glUniform" + type, program + "." + name + ", " + value);
}

Lines bindTexture(int unit, const std::string& texture) {
    return call("glActiveTexture", "GL_TEXTURE" + std::to_string(unit)) +
           call("glBindTexture", "GL_TEXTURE_2D, " + texture);
}

Lines unbindAll() {
    return bindTexture(3, "0") + bindTexture(2, "0") + bindTexture(1, "0") + bindTexture(0, "0");
}

Lines clearTarget() {
    return call("glClearColor", "0, 0, 0, 0") + call("glClear", "GL_COLOR_BUFFER_BIT");
}

Lines bindTarget(const std::string& target) {
    return call("glBindFramebuffer", "GL_FRAMEBUFFER, " + target);
}

// ---- Set-up

Lines makeShader(const std::string& type, const std::string& name) {
    return call("glCreateShader", type, name) + call("glShaderSource", name + ", source") +
           call("glCompileShader", name) + call("glGetShaderiv", name + ", GL_COMPILE_STATUS", "1");
}

Lines makeProgram(const std::string& name) {
    return makeShader("GL_VERTEX_SHADER", name + ".vert") +
           makeShader("GL_FRAGMENT_SHADER", name + ".frag") + call("glCreateProgram", "", name) +
           call("glAttachShader", name + ", " + name + ".vert") +
           call("glAttachShader", name + ", " + name + ".frag") +
           call("glBindAttribLocation", name + ", 0, \"vertex\"") +
           call("glBindAttribLocation", name + ", 1, \"texCoord\"") + call("glLinkProgram", name) +
           call("glGetProgramiv", name + ", GL_LINK_STATUS", "1");
}

Lines deleteProgram(const std::string& name) {
    return call("glDeleteShader", name + ".vert") + call("glDeleteShader", name + ".frag") +
           call("glDeleteProgram", name);
}

Lines textureParameters(const std::string& function,
                        std::initializer_list<std::string> parameters) {
    Lines lines;
    for (const std::string& parameter : parameters) {
        lines += call(function, "GL_TEXTURE_2D, GL_TEXTURE_" + parameter);
    }
    return lines;
}

Lines makeTarget(const std::string& name, const std::string& size) {
    return call("glGenFramebuffers", "1", name) + bindTarget(name) +
           call("glGenTextures", "1", name) + call("glBindTexture", "GL_TEXTURE_2D, " + name) +
           textureParameters("glTexParameteri",
                             {"WRAP_S, GL_CLAMP_TO_EDGE", "WRAP_T, GL_CLAMP_TO_EDGE",
                              "MIN_FILTER, GL_LINEAR", "MAG_FILTER, GL_LINEAR"}) +
           call("glTexImage2D",
                "GL_TEXTURE_2D, 0, GL_RGBA, " + size + ", 0, GL_RGBA, GL_UNSIGNED_BYTE, null") +
           call("glFramebufferTexture2D",
                "GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, " + name + ", 0") +
           clearTarget() + bindTarget("0");
}

Lines deleteTarget(const std::string& name) {
    return call("glDeleteFramebuffers", "1, " + name) + call("glDeleteTextures", "1, " + name);
}

/// What onInitGPU calls while there are objects of an earlier call, and a quad's buffer.
Lines setUpCalls(bool ink, bool isAgain, bool hasQuad) {
    const auto again = [isAgain](const Lines& lines) { return isAgain ? lines : ""; };
    const auto program = [&](const char* name) {
        return again(deleteProgram(name)) + makeProgram(name);
    };
    if (!ink) {
        return program("water");
    }
    return program("water") + program("advect") + program("impulse") +
           again(deleteTarget("velocity")) + makeTarget("velocity", "45, 80") +
           again(deleteTarget("inkA") + deleteTarget("inkB")) + makeTarget("inkA", "512, 1024") +
           makeTarget("inkB", "512, 1024") + (hasQuad ? call("glDeleteBuffers", "1, quad") : "") +
           call("glGenBuffers", "1", "quad") +
           call("glBlendFunc", "GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA") +
           call("glViewport", "0, 0, 512, 1024") + bindTarget("inkA") + clearTarget() +
           bindTarget("inkB") + clearTarget() + bindTarget("0");
}

Lines loadCalls(const std::string& name, bool isAgain) {
    return (isAgain ? call("glDeleteTextures", "1, " + name) : "") +
           call("glGenTextures", "1", name) + call("glBindTexture", "GL_TEXTURE_2D, " + name) +
           call("glTexImage2D",
                "GL_TEXTURE_2D, 0, GL_RGBA, 32, 32, 0, GL_RGBA, GL_UNSIGNED_BYTE, data") +
           textureParameters("glTexParameterf",
                             {"WRAP_S, GL_CLAMP_TO_EDGE", "WRAP_T, GL_CLAMP_TO_EDGE",
                              "MAG_FILTER, GL_LINEAR", "MIN_FILTER, GL_LINEAR"});
}

// ---- Frame

Lines quadAttribute(const std::string& attribute, int offset) {
    return call("glEnableVertexAttribArray", attribute) +
           call("glVertexAttribPointer",
                attribute + ", 2, GL_SHORT, GL_FALSE, 8, " + std::to_string(offset));
}

Lines drawQuad(const std::string& program) {
    return call("glBindBuffer", "GL_ARRAY_BUFFER, quad") +
           call("glBufferData", "GL_ARRAY_BUFFER, 32, data, GL_STATIC_DRAW") +
           quadAttribute(program + ".vertex", 0) + quadAttribute(program + ".texCoord", 4) +
           call("glDrawArrays", "GL_TRIANGLE_STRIP, 0, 4") +
           call("glDisableVertexAttribArray", program + ".vertex") +
           call("glDisableVertexAttribArray", program + ".texCoord") + unbindAll() +
           bindTarget("0") + call("glDisable", "GL_BLEND");
}

/// What the frame before has left for the advection.
struct Left {
    std::string dissipation, drag, center;
};

Lines advect(const std::string& source, const std::string& target, const Left& left) {
    return call("glUseProgram", "advect") + setUniform("advect", "Scale", "2f", "540, 960") +
           setUniform("advect", "TimeStep", "2f", "0.005, 0.0028125") +
           setUniform("advect", "Dissipation", "1f", left.dissipation) +
           setUniform("advect", "BackwardStepSize", "1f", "1") +
           setUniform("advect", "center", "2f", left.center) +
           setUniform("advect", "drag", "1i", left.drag) +
           setUniform("advect", "SourceTexture", "1i", "1") + bindTarget(target) +
           bindTexture(0, "velocity") + bindTexture(1, source) + drawQuad("advect");
}

Lines fluidStep(const Left& left) {
    return call("glViewport", "0, 0, 540, 960") + call("glBindTexture", "GL_TEXTURE_2D, velocity") +
           call("glTexImage2D",
                "GL_TEXTURE_2D, 0, GL_RGBA, 45, 80, 0, GL_RGBA, GL_UNSIGNED_BYTE, data") +
           call("glViewport", "0, 0, 512, 1024") + advect("inkA", "inkB", left) +
           advect("inkB", "inkA", left) + advect("inkA", "inkB", left) +
           advect("inkB", "inkA", left);
}

/// Fast, from (300, 400) to (330, 440), y down.
Lines stroke() {
    const auto set = [](const char* name, const char* type, const char* value) {
        return setUniform("impulse", name, type, value);
    };
    return call("glViewport", "0, 0, 512, 1024") + call("glUseProgram", "impulse") +
           set("current", "2f", "330, 520") + set("previous", "2f", "300, 560") +
           set("normal", "2f", "0.6, -0.8") + set("len", "1f", "50") + set("Radius", "1f", "30") +
           set("ImpulseDensity", "1f", "40") + set("Scale", "2f", "540, 960") +
           set("mode", "1i", "2") + set("Source", "1i", "0") + bindTarget("inkB") +
           bindTexture(0, "inkA") + drawQuad("impulse");
}

Lines upload(const std::string& kind, const std::string& buffer, int size) {
    const std::string target = "GL_" + kind + "_BUFFER, ";
    return call("glBindBuffer", target + buffer) +
           call("glBufferData", target + std::to_string(size) + ", data, GL_STATIC_DRAW") +
           call("glBindBuffer", target + "0");
}

Lines meshAttribute(const std::string& buffer, const std::string& attribute) {
    return call("glBindBuffer", "GL_ARRAY_BUFFER, " + buffer) +
           call("glVertexAttribPointer", "water." + attribute + ", 3, GL_FLOAT, GL_FALSE, 0, 0") +
           call("glEnableVertexAttribArray", "water." + attribute);
}

/// Without ink where `ink` is empty.
Lines drawWater(const std::string& picture, const std::string& ink, int indexCount = 72) {
    const auto set = [](const char* name, const char* type, const char* value) {
        return setUniform("water", name, type, value);
    };
    const Lines inkLines = set("Scale", "2f", "0.0018518518, 0.0010416667") +
                           set("ink_color", "3f", "3.9966664, 1.7254544, 0.499") +
                           set("intensity", "1f", "0.02") + bindTexture(2, ink) +
                           set("Density", "1i", "2");
    return call("glViewport", "0, 0, 540, 960") + call("glUseProgram", "water") +
           set("uMESH_SIZE_WIDTH", "1f", "24") + set("uMESH_SIZE_HEIGHT", "1f", "36") +
           set("uNUM_DETAILS_WIDTH", "1f", "5") + set("uNUM_DETAILS_HEIGHT", "1f", "4") +
           set("uRefractiveIndex", "1f", "1.5") +
           call("glGetAttribLocation", "water, \"aPosition\"") +
           call("glGetAttribLocation", "water, \"aHeights\"") +
           set("uMVPMatrix", "Matrix4fv",
               "1, GL_FALSE, [0.07, 0.006, 0.01, 0, -0.008, 0.045, 0.004, 0, "
               "0.02, 0.03, 0.1, 0, 0.05, -0.04, 0.1, 1]") +
           call("glBindBuffer", "GL_ARRAY_BUFFER, 0") + upload("ARRAY", "positions", 240) +
           upload("ARRAY", "heights", 240) + upload("ELEMENT_ARRAY", "indices", indexCount * 2) +
           meshAttribute("heights", "aHeights") + meshAttribute("positions", "aPosition") +
           (ink.empty() ? "" : inkLines) + set("alphaRatio1", "1f", "0.375") +
           set("fresnelRatio", "1f", "0.5") + set("specularRatio", "1f", "3") +
           set("exponent", "1f", "4") + set("viewportHeight", "1f", "960") +
           bindTexture(0, picture) + set("sBGTexture", "1i", "0") + bindTexture(1, "sheen") +
           set("sWaterTexture", "1i", "1") +
           call("glBindBuffer", "GL_ELEMENT_ARRAY_BUFFER, indices") +
           call("glDrawElements",
                "GL_TRIANGLES, " + std::to_string(indexCount) + ", GL_UNSIGNED_SHORT, 0") +
           call("glDisableVertexAttribArray", "water.aPosition") +
           call("glDisableVertexAttribArray", "water.aHeights") + unbindAll();
}

/// The bytes of the buffer uploads of the frame on record: the quad once a pass, then the mesh.
void expectUploads(const TestHost& host, int quads) {
    constexpr short quad[] = {-1, -1, 0, 0, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 1, 1};
    Bytes expected, uploaded;
    const auto expect = [&expected](const auto& elements) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(std::data(elements));
        expected.insert(expected.end(), data, data + std::size(elements) * sizeof(elements[0]));
    };
    for (int pass = 0; pass < quads; ++pass) {
        expect(quad);
    }
    expect(JniEnvironment::elements(host.positions));
    expect(JniEnvironment::elements(host.heights));
    expect(JniEnvironment::elements(host.indices)
               .first(static_cast<std::size_t>(host.arguments.indexCount)));
    for (const hostkit::GlCall& call : host.recorder.calls) {
        if (call.function == "glBufferData") {
            uploaded.insert(uploaded.end(), call.bytes.begin(), call.bytes.end());
        }
    }
    EXPECT_EQ(uploaded, expected);
}

TEST(RecordedCalls, SetUpBuildsOnceAndReplacesAfterwards) {
    TestHost host(screenWidth, screenHeight);
    bool hasQuad = false;  // which is not among the names that new buffers forget
    for (const bool ink : {true, true, false}) {
        host.setting(ink);
        EXPECT_EQ(host.initBuffers(), call("glGenBuffers", "1", "positions") +
                                          call("glGenBuffers", "1", "heights") +
                                          call("glGenBuffers", "1", "indices"));
        for (const bool isAgain : {false, true}) {
            EXPECT_EQ(host.initGpu(), setUpCalls(ink, isAgain, hasQuad));
            hasQuad = true;
        }
    }
    EXPECT_EQ(host.recorder.alive[GlKind::buffer].size(), 10u);
    EXPECT_EQ(host.recorder.alive[GlKind::program].size(), 7u);  // 6 of them forgotten
}

TEST(RecordedCalls, TexturesAreUploadedWithTheirParameters) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    for (int time = 0; time < 12; ++time) {
        if (time % 6 == 0) {
            host.initBuffers();
        }
        const char* const names[] = {"sheen", "background", "second"};
        const char* const name = names[time % 3];
        const Bytes picture = smoothPicture(time);
        host.recorder.nextLabels = {name};
        EXPECT_EQ(host.recorder.record([&] { EXPECT_EQ(host.load(picture, time % 3), 0); }),
                  loadCalls(name, time % 6 >= 3));
        for (const hostkit::GlCall& made : host.recorder.calls) {
            EXPECT_TRUE(made.function != "glTexImage2D" || made.bytes == picture);
        }
    }
}

TEST(RecordedCalls, InkFrameWithAndWithoutAStroke) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.touch(300, 400, Down);
    host.touch(300, 405, Move);
    host.touch(330, 440, Move);
    EXPECT_EQ(host.recordedFrame(),
              fluidStep({"0.96", "0", "330, 520"}) + stroke() + drawWater("background", "inkB"));
    expectUploads(host, 5);
    host.draw();  // a stroke without length brings inkA back to the front
    host.touch(340, 440, Up);
    host.touch(0, 0, Cancel);
    host.touch(340, 450, Up);
    host.arguments.useSecondBackground = true;
    EXPECT_EQ(host.recordedFrame(),
              fluidStep({"0.99", "2", "340, 510"}) + drawWater("second", "inkA"));
    expectUploads(host, 4);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, WaterOnlyFrame) {
    TestHost host(screenWidth, screenHeight);
    host.setUp(false);
    host.touch(300, 400, Down);
    host.touch(340, 440, Move);
    for (const int indexCount : {72, 0}) {
        host.arguments.indexCount = indexCount;
        EXPECT_EQ(host.recordedFrame(),
                  call("glViewport", "0, 0, 540, 960") + drawWater("background", "", indexCount));
        expectUploads(host, 0);
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, ArraysArePinnedInOrderAndReleasedWithWriteBack) {
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
    std::size_t pinnedBefore = 0;
    for (const jarray refused :
         std::initializer_list<jarray>{host.positions, host.heights, host.matrix, host.indices}) {
        host.jni.refuse(refused);
        host.jni.clearCalls();
        EXPECT_EQ(host.recordedFrame().find("glDraw"), std::string::npos);
        // An exception is pending then: what is pinned already is released, nothing more is pinned.
        EXPECT_EQ(host.jni.calls().size(), 2 * pinnedBefore++ + 1);
    }
    EXPECT_EQ(host.jni.pinned(), 0);
}

}  // namespace
}  // namespace gltest
