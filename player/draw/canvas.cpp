#include "player/draw/canvas.h"

#include "player/draw/gl_state.h"

namespace player {
namespace {

constexpr const char* vertexText = R"(
attribute vec2 aPosition;
varying vec2 vTexture;
void main() {
    vTexture = 0.5 * aPosition + 0.5;
    gl_Position = vec4(aPosition, 0.0, 1.0);
}
)";

constexpr const char* frameText = R"(
precision mediump float;
uniform sampler2D sTexture;
varying vec2 vTexture;
void main() {
    gl_FragColor = vec4(texture2D(sTexture, vTexture).rgb, 1.0);
}
)";

// The density is stored in two channels: 255 * red + green. The false colours are logarithmic, so that even invisible
// traces of ink show as blue.
constexpr const char* densityText = R"(
precision mediump float;
uniform sampler2D sTexture;
varying vec2 vTexture;
void main() {
    vec4 texel = texture2D(sTexture, vTexture);
    float ink = 255.0 * texel.r + texel.g;
    float level = clamp(log2(1.0 + 4.0 * ink) / 8.0, 0.0, 1.0);
    vec3 color = clamp(vec3(3.0 * level - 1.0, 2.0 - abs(4.0 * level - 2.0), 1.6 - 2.5 * level), 0.0, 1.0);
    gl_FragColor = vec4(color, 0.25 + 0.65 * min(1.0, 4.0 * level));
}
)";

constexpr GLenum wraps[] = {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T};
constexpr GLenum filters[] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER};
constexpr GLfloat corners[] = {-1.0f, -1.0f, 1.0f, -1.0f, -1.0f, 1.0f, 1.0f, 1.0f};

}  // namespace

Canvas::Canvas()
    : frameProgram(buildGlProgram(vertexText, frameText, {"aPosition"})),
      densityProgram(buildGlProgram(vertexText, densityText, {"aPosition"})) {
    const GlStateGuard guard;
    glGenTextures(1, &frame);
    glGenBuffers(1, &quad);
    glBindBuffer(GL_ARRAY_BUFFER, quad);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
}

Canvas::~Canvas() {
    glDeleteTextures(1, &frame);
    glDeleteBuffers(1, &quad);
    glDeleteProgram(frameProgram);
    glDeleteProgram(densityProgram);
}

void Canvas::keep(app::Size screen) {
    const GlStateGuard guard;
    glBindTexture(GL_TEXTURE_2D, frame);
    if (frameSize == screen) {
        glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, screen.width, screen.height);
        return;
    }
    // OpenGL ES 2.0 samples a texture of any size only if it clamps to the edge and has no mipmaps.
    for (const GLenum edge : wraps) {
        glTexParameteri(GL_TEXTURE_2D, edge, GL_CLAMP_TO_EDGE);
    }
    for (const GLenum filter : filters) {
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    }
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, screen.width, screen.height, 0);
    frameSize = screen;
}

void Canvas::show(app::Size screen) {
    if (frameSize.width == 0) {
        return;
    }
    const GlStateGuard guard;
    glDisable(GL_BLEND);
    drawQuad(frameProgram, frame, screen);
}

void Canvas::showDensity(GLuint texture, app::Size screen) {
    const GlStateGuard guard;
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    drawQuad(densityProgram, texture, screen);
}

void Canvas::drawQuad(GLuint program, GLuint texture, app::Size screen) const {
    glViewport(0, 0, screen.width, screen.height);
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "sTexture"), 0);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBindBuffer(GL_ARRAY_BUFFER, quad);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(0);
}

}  // namespace player
