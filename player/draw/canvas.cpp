#include "player/draw/canvas.h"

#include "app/gl_state.h"

namespace player {
namespace {

constexpr const char* frameText = R"(
precision mediump float;
uniform sampler2D sTexture;
varying vec2 vTexture;
void main() {
    gl_FragColor = vec4(texture2D(sTexture, vTexture).rgb, 1.0);
}
)";

constexpr GLenum wraps[] = {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T};
constexpr GLenum filters[] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER};

}  // namespace

Canvas::Canvas() : quad(frameText) {
    const app::GlStateGuard guard;
    glGenTextures(1, &frame);
}

Canvas::~Canvas() {
    glDeleteTextures(1, &frame);
}

void Canvas::keep(app::Size screen) {
    const app::GlStateGuard guard;
    glBindTexture(GL_TEXTURE_2D, frame);
    if (frameSize == screen) {
        glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, screen.width, screen.height);
        return;
    }
    // OpenGL ES 2.0 can sample a texture whose sides are not powers of two only if the texture clamps to the edge and
    // has no mipmaps.
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
    const app::GlStateGuard guard;
    glDisable(GL_BLEND);
    quad.draw(frame, screen);
}

}  // namespace player
