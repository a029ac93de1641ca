#include <gtest/gtest.h>

#include <regex>

#include "scene.h"

// Every GL call of the library, in order, with its arguments and bytes.

namespace gltest {
namespace {

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;

struct Abbreviation {
    const char *words, *meaning;
};

// Those that others contain come later. Calls are parted by "; " or by a new line.
constexpr Abbreviation abbreviations[] = {
    {",\n", ", "},
    {R"(\bprogram (\w+))", R"(glCreateShader(GL_VERTEX_SHADER) = $1.vert
glShaderSource($1.vert, source); glCompileShader($1.vert)
glGetShaderiv($1.vert, GL_COMPILE_STATUS) = 1; glCreateShader(GL_FRAGMENT_SHADER) = $1.frag
glShaderSource($1.frag, source); glCompileShader($1.frag)
glGetShaderiv($1.frag, GL_COMPILE_STATUS) = 1
glCreateProgram() = $1; glAttachShader($1, $1.vert); glAttachShader($1, $1.frag)
glBindAttribLocation($1, 0, "vertex"); glBindAttribLocation($1, 1, "texCoord")
glLinkProgram($1); glGetProgramiv($1, GL_LINK_STATUS) = 1)"},
    {R"(unprogram (\w+))", "glDeleteShader($1.vert); glDeleteShader($1.frag); glDeleteProgram($1)"},
    {R"(\btarget (\w+) (\d+, \d+))", R"(glGenFramebuffers(1) = $1
glBindFramebuffer(GL_FRAMEBUFFER, $1); glGenTextures(1) = $1; glBindTexture(GL_TEXTURE_2D, $1)
glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)
glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, $2, 0, GL_RGBA, GL_UNSIGNED_BYTE, null)
glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, $1, 0)
clear; glBindFramebuffer(GL_FRAMEBUFFER, 0))"},
    {R"(untarget (\w+))", "glDeleteFramebuffers(1, $1); glDeleteTextures(1, $1)"},
    {"clear", "glClearColor(0, 0, 0, 0); glClear(GL_COLOR_BUFFER_BIT)"},
    {R"(advection (\w+) (\w+) (\S+) (\w+) (\d+, \d+))", R"(glUseProgram(advect)
set advect.Scale 2f 540, 960; set advect.TimeStep 2f 0.005, 0.0028125
set advect.Dissipation 1f $3; set advect.BackwardStepSize 1f 1
set advect.center 2f $5; set advect.drag 1i $4; set advect.SourceTexture 1i 1
glBindFramebuffer(GL_FRAMEBUFFER, $2); bind 0 velocity; bind 1 $1; quad advect)"},
    {R"(\bquad (\w+))", R"(glBindBuffer(GL_ARRAY_BUFFER, quad)
glBufferData(GL_ARRAY_BUFFER, 32, data, GL_STATIC_DRAW); glEnableVertexAttribArray($1.vertex)
glVertexAttribPointer($1.vertex, 2, GL_SHORT, GL_FALSE, 8, 0)
glEnableVertexAttribArray($1.texCoord)
glVertexAttribPointer($1.texCoord, 2, GL_SHORT, GL_FALSE, 8, 4)
glDrawArrays(GL_TRIANGLE_STRIP, 0, 4); glDisableVertexAttribArray($1.vertex)
glDisableVertexAttribArray($1.texCoord); unbind
glBindFramebuffer(GL_FRAMEBUFFER, 0); glDisable(GL_BLEND))"},
    {R"(upload (\w+) (\w+) (\w+))", R"(glBindBuffer(GL_$1_BUFFER, $2)
glBufferData(GL_$1_BUFFER, $3, data, GL_STATIC_DRAW); glBindBuffer(GL_$1_BUFFER, 0))"},
    {R"(attribute (\w+) (\w+))", R"(glBindBuffer(GL_ARRAY_BUFFER, $1)
glVertexAttribPointer(water.$2, 3, GL_FLOAT, GL_FALSE, 0, 0)
glEnableVertexAttribArray(water.$2))"},
    {"unbind", "bind 3 0; bind 2 0; bind 1 0; bind 0 0"},
    {R"(\bbind (\d) (\w+))", "glActiveTexture(GL_TEXTURE$1); glBindTexture(GL_TEXTURE_2D, $2)"},
    {"; |\n+", "\n"},
    {R"(\bset (\w+)\.(\w+) (\w+) (.*))",
     "glGetUniformLocation($1, \"$2\")\nglUniform$3($1.$2, $4)"},
    // The compiler has dropped the uniform: no result needs it.
    {R"(\bdropped (\w+)\.(\w+) (\w+) (.*))",
     "glGetUniformLocation($1, \"$2\")\nglUniform$3(-1, $4)"},
};

/// The text with its abbreviations written out, after what is particular to the case.
std::string calls(std::string text, std::vector<Abbreviation> all) {
    all.insert(all.end(), std::begin(abbreviations), std::end(abbreviations));
    for (const auto& [words, meaning] : all) {
        text = std::regex_replace(text, std::regex(words), meaning);
    }
    return text;
}

constexpr char inkSetUp[] = R"(program water; program advect; program impulse
AGAIN untarget velocity
target velocity 45, 80
AGAIN untarget inkA; untarget inkB
target inkA 512, 1024; target inkB 512, 1024; glDeleteBuffers(1, quad); glGenBuffers(1) = quad
glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); glViewport(0, 0, 512, 1024)
glBindFramebuffer(GL_FRAMEBUFFER, inkA); clear; glBindFramebuffer(GL_FRAMEBUFFER, inkB); clear
)";

constexpr char pictureCalls[] = R"(AGAIN glDeleteTextures(1, NAME)
glGenTextures(1) = NAME; glBindTexture(GL_TEXTURE_2D, NAME)
glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 32, 32, 0, GL_RGBA, GL_UNSIGNED_BYTE, data)
glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)
)";

/// The calls of a first and of a second time.
const std::vector<Abbreviation> first = {{"AGAIN .*\n", ""}},
                                second = {{"AGAIN ", ""},
                                          {"\\bprogram (\\w+)", "unprogram $1; program $1"}};

constexpr char fluidStep[] = R"(glViewport(0, 0, 540, 960); glBindTexture(GL_TEXTURE_2D, velocity)
glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 45, 80, 0, GL_RGBA, GL_UNSIGNED_BYTE, data)
glViewport(0, 0, 512, 1024)
advection inkA inkB LEFT; advection inkB inkA LEFT
advection inkA inkB LEFT; advection inkB inkA LEFT
)";

// Fast, from (300, 400) to (330, 440), y down.
constexpr char stroke[] = R"(glViewport(0, 0, 512, 1024); glUseProgram(impulse)
set impulse.current 2f 330, 520; set impulse.previous 2f 300, 560
set impulse.normal 2f 0.6, -0.8; set impulse.len 1f 50
set impulse.Radius 1f 30; set impulse.ImpulseDensity 1f 40; set impulse.Scale 2f 540, 960
set impulse.mode 1i 2; set impulse.Source 1i 0; glBindFramebuffer(GL_FRAMEBUFFER, inkB)
bind 0 inkA; quad impulse
)";

constexpr char shownInk[] = R"(set water.Scale 2f 0.0018518518, 0.0010416667
set water.ink_color 3f 3.9966664, 1.7254544, 0.499; set water.intensity 1f 0.02
bind 2 SHOWN; set water.Density 1i 2)";

constexpr char waterDraw[] = R"(glViewport(0, 0, 540, 960); glUseProgram(water)
set water.uMESH_SIZE_WIDTH 1f 24; set water.uMESH_SIZE_HEIGHT 1f 36
dropped water.uNUM_DETAILS_WIDTH 1f 5; dropped water.uNUM_DETAILS_HEIGHT 1f 4
set water.uRefractiveIndex 1f 1.5
glGetAttribLocation(water, "aPosition"); glGetAttribLocation(water, "aHeights")
set water.uMVPMatrix Matrix4fv 1, GL_FALSE, [0.07, 0.006, 0.01, 0, -0.008, 0.045, 0.004, 0,
0.02, 0.03, 0.1, 0, 0.05, -0.04, 0.1, 1]
glBindBuffer(GL_ARRAY_BUFFER, 0); upload ARRAY positions 240; upload ARRAY heights 240
upload ELEMENT_ARRAY indices BYTES
attribute heights aHeights; attribute positions aPosition
INK
set water.alphaRatio1 1f 0.375; set water.fresnelRatio 1f 0.5; set water.specularRatio 1f 3
set water.exponent 1f 4; dropped water.viewportHeight 1f 960
bind 0 PICTURE; set water.sBGTexture 1i 0; bind 1 sheen; set water.sWaterTexture 1i 1
glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices)
glDrawElements(GL_TRIANGLES, COUNT, GL_UNSIGNED_SHORT, 0)
glDisableVertexAttribArray(water.aPosition); glDisableVertexAttribArray(water.aHeights); unbind
)";

/// The bytes of the buffer uploads of the frame on record: the quad once a pass, then the mesh.
void expectUploads(const Scene& scene, int quads) {
    constexpr short quad[] = {-1, -1, 0, 0, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 1, 1};
    Bytes expected, uploaded;
    const auto expect = [&expected](const auto& elements) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(std::data(elements));
        expected.insert(expected.end(), data, data + std::size(elements) * sizeof(elements[0]));
    };
    for (int pass = 0; pass < quads; ++pass) {
        expect(quad);
    }
    expect(JniEnvironment::elements(scene.positions));
    expect(JniEnvironment::elements(scene.heights));
    expect(JniEnvironment::elements(scene.indices)
               .first(static_cast<std::size_t>(scene.arguments.indexCount)));
    for (const hostkit::GlCall& call : scene.recorder.calls) {
        if (call.function == "glBufferData") {
            uploaded.insert(uploaded.end(), call.bytes.begin(), call.bytes.end());
        }
    }
    EXPECT_EQ(uploaded, expected);
}

TEST(RecordedCalls, SetUpBuildsOnceAndReplacesAfterwards) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();  // so that there is a quad buffer, whatever ran before
    for (const bool ink : {true, false}) {
        scene.setting(screenWidth, screenHeight, ink);
        EXPECT_EQ(scene.initBuffers(),
                  "glGenBuffers(1) = positions\nglGenBuffers(1) = heights\n"
                  "glGenBuffers(1) = indices\n");
        for (const auto& time : {first, second}) {
            EXPECT_EQ(scene.initGpu(), calls(ink ? inkSetUp : "program water\n", time));
        }
    }
    EXPECT_EQ(scene.recorder.alive[GlKind::buffer].size(), 10u);
    EXPECT_EQ(scene.recorder.alive[GlKind::program].size(), 7u);  // 6 of them forgotten
}

TEST(RecordedCalls, TexturesAreUploadedWithTheirParameters) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    for (int call = 0; call < 12; ++call) {
        if (call % 6 == 0) {
            scene.initBuffers();
        }
        const char* const names[] = {"sheen", "background", "second"};
        const char* const name = names[call % 3];
        const Bytes picture = smoothPicture(call);
        scene.recorder.nextLabels = {name};
        const std::string lines =
            scene.recorder.record([&] { EXPECT_EQ(scene.load(picture, call % 3), 0); });
        auto ofCase = call % 6 < 3 ? first : second;
        ofCase.push_back({"NAME", name});
        EXPECT_EQ(lines, calls(pictureCalls, ofCase));
        for (const hostkit::GlCall& made : scene.recorder.calls) {
            EXPECT_TRUE(made.function != "glTexImage2D" || made.bytes == picture);
        }
    }
}

TEST(RecordedCalls, InkFrameWithAndWithoutAStroke) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.touch(300, 400, Down);
    scene.touch(300, 405, Move);
    scene.touch(330, 440, Move);
    const auto expectFrame = [&](const std::string& expected, std::vector<Abbreviation> ofCase) {
        ofCase.insert(ofCase.end(), {{"BYTES", "144"}, {"COUNT", "72"}});
        ofCase.insert(ofCase.begin(), {"INK", shownInk});
        EXPECT_EQ(scene.recordedFrame(), calls(expected + waterDraw, ofCase));
        expectUploads(scene, expected == fluidStep ? 4 : 5);
    };
    expectFrame(std::string(fluidStep) + stroke,
                {{"SHOWN", "inkB"}, {"PICTURE", "background"}, {"LEFT", "0.96 0 330, 520"}});
    scene.draw();  // a stroke without length brings inkA back to the front
    scene.touch(340, 440, Up);
    scene.touch(0, 0, Cancel);
    scene.touch(340, 450, Up);
    scene.arguments.useSecondBackground = true;
    expectFrame(fluidStep, {{"SHOWN", "inkA"}, {"PICTURE", "second"}, {"LEFT", "0.99 2 340, 510"}});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, WaterOnlyFrame) {
    Scene scene(screenWidth, screenHeight, false);
    scene.setUp();
    scene.touch(300, 400, Down);
    scene.touch(340, 440, Move);
    for (const int indexCount : {72, 0}) {
        scene.arguments.indexCount = indexCount;
        const std::string expected = calls(std::string("glViewport(0, 0, 540, 960)\n") + waterDraw,
                                           {{"INK\n", ""},
                                            {"PICTURE", "background"},
                                            {"BYTES", indexCount ? "144" : "0"},
                                            {"COUNT", indexCount ? "72" : "0"}});
        EXPECT_EQ(scene.recordedFrame(), expected);
        expectUploads(scene, 0);
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(RecordedCalls, ArraysArePinnedInOrderAndReleasedWithWriteBack) {
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.jni.setLogging(true);
    scene.draw();
    std::vector<hostkit::JniCall> expected;
    for (const std::string call : {"Get", "Release"}) {
        for (const jfloatArray array : {scene.positions, scene.heights, scene.matrix}) {
            expected.push_back({call + "FloatArrayElements", JniEnvironment::id(array), 0});
        }
        expected.push_back({call + "ShortArrayElements", JniEnvironment::id(scene.indices), 0});
    }
    EXPECT_EQ(scene.jni.calls(), expected);
    for (const jarray refused : std::initializer_list<jarray>{scene.positions, scene.heights,
                                                              scene.matrix, scene.indices}) {
        scene.jni.refuse(refused);
        EXPECT_EQ(scene.recordedFrame().find("glDraw"), std::string::npos);
    }
    EXPECT_EQ(scene.jni.pinned(), 0);
}

}  // namespace
}  // namespace gltest
