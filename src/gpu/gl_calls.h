#pragma once

#include <GLES2/gl2.h>

#include "base/pair.h"

// Setting the uniforms of a program by name. Locations are looked up at every use; a name that the
// program does not have is set at location -1, which GL ignores. GL thread.

namespace velmora {

inline void setUniform(GLuint program, const char* name, float value) {
    glUniform1f(glGetUniformLocation(program, name), value);
}
inline void setUniform(GLuint program, const char* name, GLint value) {
    glUniform1i(glGetUniformLocation(program, name), value);
}
inline void setUniform(GLuint program, const char* name, Float2 value) {
    glUniform2f(glGetUniformLocation(program, name), value.x, value.y);
}
inline void setUniform(GLuint program, const char* name, float x, float y, float z) {
    glUniform3f(glGetUniformLocation(program, name), x, y, z);
}

inline void bindTexture(GLenum unit, GLuint texture) {
    glActiveTexture(unit);
    glBindTexture(GL_TEXTURE_2D, texture);
}

/// How every pass leaves the texture units: nothing bound on the four that the effect uses, unit 0 active.
inline void unbindTextures() {
    for (GLenum unit = GL_TEXTURE3; unit >= GL_TEXTURE0; --unit) {
        bindTexture(unit, 0);
    }
}

}  // namespace velmora
