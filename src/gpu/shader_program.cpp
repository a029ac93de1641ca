#include "gpu/shader_program.h"

#include <GLES2/gl2.h>

namespace velmora {

std::uint32_t compileShader(std::uint32_t type, const char* source) {
    const GLuint shader = glCreateShader(type);
    if (shader == 0) {
        return 0;
    }
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_FALSE) {
        glDeleteShader(shader);
        return 0;
    }
    return shader;
}

std::uint32_t linkProgram(std::uint32_t vertexShader, std::uint32_t fragmentShader) {
    const GLuint program = glCreateProgram();
    if (program == 0) {
        return 0;
    }
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glBindAttribLocation(program, 0, "vertex");
    glBindAttribLocation(program, 1, "texCoord");
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE) {
        glDeleteProgram(program);
        return 0;
    }
    return program;
}

/// Deletes the objects of a program. Checks each name, because some are 0 after a failed build.
static void deleteProgram(const ShaderProgram& slot) {
    if (slot.vertexShader != 0) {
        glDeleteShader(slot.vertexShader);
    }
    if (slot.fragmentShader != 0) {
        glDeleteShader(slot.fragmentShader);
    }
    if (slot.program != 0) {
        glDeleteProgram(slot.program);
    }
}

void buildProgram(ShaderProgram& slot, const char* vertexSource, const char* fragmentSource) {
    deleteProgram(slot);
    slot.vertexShader = compileShader(GL_VERTEX_SHADER, vertexSource);
    slot.fragmentShader = compileShader(GL_FRAGMENT_SHADER, fragmentSource);
    slot.program = slot.vertexShader != 0 && slot.fragmentShader != 0
                       ? linkProgram(slot.vertexShader, slot.fragmentShader)
                       : 0;
}

}  // namespace velmora
