#pragma once

#include <GLES2/gl2.h>

#include "app/size.h"

namespace app {

/// Draws a texture over the whole screen with a fragment shader. Belongs to the GL context that was current at
/// construction. Callers hold a GlStateGuard.
class TexturedQuad {
public:
    /// Builds the program. The shader reads the texture `sTexture` at the coordinates `vTexture`. Throws HostError.
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
