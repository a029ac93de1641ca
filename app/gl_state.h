#pragma once

#include <GLES2/gl2.h>

#include <array>
#include <initializer_list>

namespace app {

/// Saves the GL state that other drawing changes and restores it at the end of the scope. The library thus finds
/// the state that it left. Code in the scope uses texture unit 0 only and disables its vertex arrays.
class GlStateGuard {
public:
    GlStateGuard();
    ~GlStateGuard();
    GlStateGuard(const GlStateGuard&) = delete;
    GlStateGuard& operator=(const GlStateGuard&) = delete;

private:
    GLint program = 0, vertices = 0, indices = 0, framebuffer = 0, unit = 0, texture = 0;
    GLint blendFrom = 0, blendTo = 0;
    std::array<GLint, 4> viewport{};
    GLboolean blend, scissor;
};

/// Returns a linked program of two GLSL sources. The position of an attribute in `attributes` is its location.
/// Throws HostError with the linker's log.
GLuint buildGlProgram(const char* vertexText, const char* fragmentText,
                      std::initializer_list<const char*> attributes);

}  // namespace app
