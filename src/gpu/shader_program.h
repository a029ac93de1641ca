#pragma once

#include <cstdint>

namespace velmora {

/// GL names of a linked program and its shaders. The program exists if `program` is not 0.
struct ShaderProgram {
    std::uint32_t program;
    std::uint32_t vertexShader;
    std::uint32_t fragmentShader;
};

/// Compiles a shader of type GL_VERTEX_SHADER or GL_FRAGMENT_SHADER. Returns the shader's GL name, or 0 on failure.
/// Call the functions of this header on the GL thread.
std::uint32_t compileShader(std::uint32_t type, const char* source);

/// Links two shaders. Binds the attribute "vertex" to location 0 and "texCoord" to location 1. Returns the program's
/// GL name, or 0 on failure.
std::uint32_t linkProgram(std::uint32_t vertexShader, std::uint32_t fragmentShader);

/// Deletes the GL objects of `program` and builds them again. If the build fails, the GL names in `program` stay 0 and
/// no error is reported.
void buildProgram(ShaderProgram& program, const char* vertexSource, const char* fragmentSource);

}  // namespace velmora
