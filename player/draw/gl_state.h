#pragma once

#include <GLES2/gl2.h>

#include <array>
#include <initializer_list>

namespace player {

/// Puts back at its end what drawing over the library's frame changes, so that the library finds GL
/// as it left it. What is drawn meanwhile uses texture unit 0 and disables its vertex arrays.
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

/// A linked program of two GLSL texts; its attributes have the locations in which they are listed.
/// Throws Failure with the compiler's words.
GLuint buildGlProgram(const char* vertexText, const char* fragmentText,
                      std::initializer_list<const char*> attributes);

}  // namespace player
