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
static void deleteProgram(const ShaderProgram& program) {
    if (program.vertexShader != 0) {
        glDeleteShader(program.vertexShader);
    }
    if (program.fragmentShader != 0) {
        glDeleteShader(program.fragmentShader);
    }
    if (program.program != 0) {
        glDeleteProgram(program.program);
    }
}

void buildProgram(ShaderProgram& program, const char* vertexSource, const char* fragmentSource) {
    deleteProgram(program);
    program.vertexShader = compileShader(GL_VERTEX_SHADER, vertexSource);
    program.fragmentShader = compileShader(GL_FRAGMENT_SHADER, fragmentSource);
    program.program = program.vertexShader != 0 && program.fragmentShader != 0
                          ? linkProgram(program.vertexShader, program.fragmentShader)
                          : 0;
}

}  // namespace velmora
