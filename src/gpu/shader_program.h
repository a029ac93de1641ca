#pragma once

#include <cstdint>

namespace velmora {

/// A linked program and its shaders, as GL names; 0 means none. It exists if `program` is not 0.
struct ShaderProgram {
    std::uint32_t program;
    std::uint32_t vertexShader;
    std::uint32_t fragmentShader;
};

/// Compiles a shader of type GL_VERTEX_SHADER or GL_FRAGMENT_SHADER. Returns 0 on failure. GL thread, like all
/// functions below.
std::uint32_t compileShader(std::uint32_t type, const char* source);

/// Links two shaders with location 0 bound to "vertex" and 1 to "texCoord". Returns 0 on failure.
std::uint32_t linkProgram(std::uint32_t vertexShader, std::uint32_t fragmentShader);

/// Deletes the slot's objects and builds the program again. A failure leaves 0 and is not reported.
void buildProgram(ShaderProgram& slot, const char* vertexSource, const char* fragmentSource);

}  // namespace velmora
