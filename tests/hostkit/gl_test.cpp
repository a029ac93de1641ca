#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/host_error.h"
#include "hostkit/instruments/gl_recorder.h"

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

TEST(GlContext, TwoContextsAreIndependentAndOneCanBeReplaced) {
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

TEST(GlContext, ReadsTheDefaultFramebufferFromTopToBottom) {
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

TEST(GlContext, AnInvalidSurfaceSizeThrows) {
    EXPECT_THROW(GlContext(-1, 4), HostError);
}

TEST(GlRecorder, CallsOfAHookAreNotRecorded) {
    const GlContext context(8, 4);
    GlRecorder& recorder = glRecorder();
    recorder.inside = [](const char*) { glClearColor(1, 1, 0, 1); };
    EXPECT_EQ(recorder.record([] { glClear(GL_COLOR_BUFFER_BIT); }),
              "glClear(GL_COLOR_BUFFER_BIT)\n");
    EXPECT_EQ(pixelAt(context, 0, 0), (Pixel{255, 255, 0, 255}));
    recorder.reset();
}

}  // namespace
}  // namespace hostkit
