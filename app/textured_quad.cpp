#include "app/textured_quad.h"

#include "app/gl_state.h"

namespace app {
namespace {

constexpr const char* vertexText = R"(
attribute vec2 aPosition;
varying vec2 vTexture;
void main() {
    vTexture = 0.5 * aPosition + 0.5;
    gl_Position = vec4(aPosition, 0.0, 1.0);
}
)";

constexpr GLfloat positions[] = {-1.0f, -1.0f, 1.0f, -1.0f, -1.0f, 1.0f, 1.0f, 1.0f};

}  // namespace

TexturedQuad::TexturedQuad(const char* fragmentText)
    : program(buildGlProgram(vertexText, fragmentText, {"aPosition"})) {
    const GlStateGuard guard;
    glGenBuffers(1, &corners);
    glBindBuffer(GL_ARRAY_BUFFER, corners);
    glBufferData(GL_ARRAY_BUFFER, sizeof positions, positions, GL_STATIC_DRAW);
}

TexturedQuad::~TexturedQuad() {
    glDeleteBuffers(1, &corners);
    glDeleteProgram(program);
}

void TexturedQuad::draw(GLuint texture, Size screen) const {
    glViewport(0, 0, screen.width, screen.height);
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "sTexture"), 0);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBindBuffer(GL_ARRAY_BUFFER, corners);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(0);
}

}  // namespace app
