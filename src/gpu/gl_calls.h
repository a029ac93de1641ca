#pragma once

#include <GLES2/gl2.h>

#include "base/pair.h"

// Sets the uniforms of a program by name. Each call looks the location up again. An unknown name has the location -1,
// which GL ignores. Call these functions on the GL thread.

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

/// Unbinds the textures of the four units that the effect uses. Unit 0 stays active.
inline void unbindTextures() {
    for (GLenum unit = GL_TEXTURE3; unit >= GL_TEXTURE0; --unit) {
        bindTexture(unit, 0);
    }
}

}  // namespace velmora
