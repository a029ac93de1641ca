#pragma once

#include <GLES2/gl2.h>

#include <array>
#include <initializer_list>

namespace app {

/// Saves the GL state that drawing code outside the library changes, and restores this state at the end of the scope.
/// The library expects its GL state unchanged in the next frame. Code in the scope must use only texture unit 0 and
/// must disable the vertex arrays that it enables.
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

/// Builds and links a program from two GLSL sources. The index of a name in `attributes` is the attribute's location.
/// On failure, throws HostError with the compiler's or linker's log.
GLuint buildGlProgram(const char* vertexText, const char* fragmentText,
                      std::initializer_list<const char*> attributes);

}  // namespace app
