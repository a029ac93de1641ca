#pragma once

#include <cstdint>

namespace velmora {

/// A linked program and the shaders it was built from; GL names, 0 meaning none. It exists when
/// `program` is not 0.
struct ShaderProgram {
    std::uint32_t program;
    std::uint32_t vertexShader;
    std::uint32_t fragmentShader;
};

/// Compiles one shader of GL_VERTEX_SHADER or GL_FRAGMENT_SHADER; 0 on failure. GL thread, like all below.
std::uint32_t compileShader(std::uint32_t type, const char* source);

/// Links two shaders, with location 0 bound to "vertex" and 1 to "texCoord"; 0 on failure.
std::uint32_t linkProgram(std::uint32_t vertexShader, std::uint32_t fragmentShader);

/// Deletes what the slot holds and builds it anew; a failure leaves 0 and is not reported.
void buildProgram(ShaderProgram& slot, const char* vertexSource, const char* fragmentSource);

}  // namespace velmora
