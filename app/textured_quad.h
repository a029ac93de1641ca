#pragma once

#include <GLES2/gl2.h>

#include "app/size.h"

namespace app {

/// Draws a texture over the whole screen with a given fragment shader. The object belongs to the GL context that was
/// current at construction. While you use the object, a GlStateGuard must exist.
class TexturedQuad {
public:
    /// Builds the program. The fragment shader reads the texture `sTexture` at the coordinates `vTexture`. Throws
    /// HostError if the shader does not compile or link.
    explicit TexturedQuad(const char* fragmentText);
    ~TexturedQuad();
    TexturedQuad(const TexturedQuad&) = delete;
    TexturedQuad& operator=(const TexturedQuad&) = delete;

    void draw(GLuint texture, Size screen) const;

private:
    GLuint program;
    GLuint corners = 0;
};

}  // namespace app
