#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include "hostkit/gl_context.h"
#include "hostkit/gl_recorder.h"
#include "hostkit/host_error.h"

namespace hostkit {
namespace {

using Pixel = std::vector<std::uint8_t>;

Pixel pixelAt(const GlContext& context, int x, int y) {
    const auto pixels = context.readPixels();
    const auto first = pixels.begin() + (y * context.width() + x) * 4;
    return {first, first + 4};
}

void fill(float red, float green, float blue) {
    glClearColor(red, green, blue, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

struct GlTap : testing::Test {
    GlTap() { recorder.reset(); }
    ~GlTap() override { recorder.reset(); }
    GlContext context{8, 4};
    GlRecorder& recorder = glRecorder();
};

TEST(GlContext, TwoContextsAreApartAndOneCanBeReplaced) {
    GlContext first(8, 4);
    fill(1, 0, 0);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    {
        const GlContext second(3, 5);
        EXPECT_FALSE(glIsTexture(texture));
        fill(0, 0, 1);
        EXPECT_EQ(second.readPixels().size(), 60u);
        EXPECT_EQ(pixelAt(second, 2, 4), (Pixel{0, 0, 255, 255}));
    }
    first.makeCurrent();
    EXPECT_TRUE(glIsTexture(texture));
    EXPECT_EQ(pixelAt(first, 7, 3), (Pixel{255, 0, 0, 255}));
    first = GlContext(2, 2);
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_EQ(first.readPixels().size(), 16u);
}

TEST(GlContext, RowsComeTopToBottomFromTheDefaultFramebuffer) {
    const GlContext context(8, 4);
    fill(0, 0, 0);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 3, 8, 1);
    fill(0, 1, 0);
    GLuint framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    EXPECT_EQ(pixelAt(context, 5, 0), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(pixelAt(context, 5, 1), (Pixel{0, 0, 0, 255}));
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(static_cast<GLuint>(bound), framebuffer);
}

TEST(GlContext, AnImpossibleSurfaceIsOneLine) {
    try {
        const GlContext context(-1, 4);
        FAIL() << "a context with a negative width";
    } catch (const HostError& error) {
        EXPECT_NE(std::string(error.what()).find("eglCreatePbufferSurface failed"),
                  std::string::npos);
    }
}

GLuint compiled(GLenum type, const char* source) {
    const GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

GLuint linkedImpulse() {
    const GLuint program = glCreateProgram();
    glAttachShader(
        program,
        compiled(GL_VERTEX_SHADER, "attribute vec4 vertex; void main() { gl_Position = vertex; }"));
    glAttachShader(program, compiled(GL_FRAGMENT_SHADER,
                                     "precision mediump float; uniform float ImpulseDensity;"
                                     "void main() { gl_FragColor = vec4(ImpulseDensity); }"));
    glBindAttribLocation(program, 3, "vertex");
    glLinkProgram(program);
    return program;
}

TEST_F(GlTap, LinesNameProgramsUniformsAttributesObjectsAndEnums) {
    const GLuint program = linkedImpulse();
    GLuint texture = 0;
    recorder.recording = true;
    glGenTextures(1, &texture);
    recorder.labels[{GlKind::texture, texture}] = "sheen";
    glUseProgram(program);
    glUniform1f(glGetUniformLocation(program, "ImpulseDensity"), 0.1f);
    glUniform2f(glGetUniformLocation(program, "absent"), 1.0f, 2.5f);
    glVertexAttribPointer(3, 2, GL_SHORT, GL_FALSE, 8, nullptr);
    glActiveTexture(GL_TEXTURE2);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    const std::uint8_t pixels[] = {1, 2, 3, 4, 5, 6, 7, 8};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDeleteTextures(1, &texture);
    recorder.recording = false;
    glDrawArrays(GL_TRIANGLES, 0, 0);

    EXPECT_EQ(
        recorder.lines(),
        (std::vector<std::string>{
            "glGenTextures(1) = texture" + std::to_string(texture), "glUseProgram(impulse)",
            "glGetUniformLocation(impulse, \"ImpulseDensity\")",
            "glUniform1f(impulse.ImpulseDensity, 0.1)", "glGetUniformLocation(impulse, \"absent\")",
            "glUniform2f(-1, 1, 2.5)",
            "glVertexAttribPointer(impulse.vertex, 2, GL_SHORT, GL_FALSE, 8, 0)",
            "glActiveTexture(GL_TEXTURE2)", "glBindTexture(GL_TEXTURE_2D, sheen)",
            "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
            "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, data)",
            "glBindTexture(GL_TEXTURE_2D, 0)", "glDeleteTextures(1, sheen)"}));
    EXPECT_EQ(recorder.calls[10].bytes, std::vector<std::uint8_t>(pixels, pixels + 8));
    EXPECT_EQ(recorder.count("glBindTexture"), 2);
    EXPECT_TRUE(recorder.alive[GlKind::texture].empty());
    EXPECT_EQ(recorder.alive[GlKind::shader].size(), 2u);
}

TEST_F(GlTap, HooksRunInsideCallsAndMakeThemFail) {
    recorder.refuse = [](const char* function, int nth) {
        const std::string name = function;
        return name == "glGenFramebuffers" || (name == "glGetShaderiv" && nth == 2);
    };
    GLuint framebuffer = 7;
    glGenFramebuffers(1, &framebuffer);
    EXPECT_EQ(framebuffer, 0u);
    const GLuint shader = compiled(GL_VERTEX_SHADER, "void main() { gl_Position = vec4(0); }");
    for (const GLint expected : {GL_TRUE, GL_FALSE, GL_TRUE}) {
        GLint status = -1;
        glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
        EXPECT_EQ(status, expected);
    }

    recorder.recording = true;
    int seen = 0;
    recorder.inside = [&](const char*) {
        ++seen;
        glClearColor(1, 1, 0, 1);
    };
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(recorder.lines(), std::vector<std::string>{"glClear(GL_COLOR_BUFFER_BIT)"});
    EXPECT_EQ(pixelAt(context, 0, 0), (Pixel{255, 255, 0, 255}));
}

}  // namespace
}  // namespace hostkit
