#include "app/gl_state.h"

#include <initializer_list>
#include <string>

#include "hostkit/host_error.h"

namespace app {
namespace {

GLint stateOf(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

void setEnabled(GLenum capability, GLboolean on) {
    on ? glEnable(capability) : glDisable(capability);
}

GLuint compile(GLenum kind, const char* text) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    return shader;
}

}  // namespace

GlStateGuard::GlStateGuard()
    : program(stateOf(GL_CURRENT_PROGRAM)),
      vertices(stateOf(GL_ARRAY_BUFFER_BINDING)),
      indices(stateOf(GL_ELEMENT_ARRAY_BUFFER_BINDING)),
      framebuffer(stateOf(GL_FRAMEBUFFER_BINDING)),
      unit(stateOf(GL_ACTIVE_TEXTURE)),
      blendFrom(stateOf(GL_BLEND_SRC_RGB)),
      blendTo(stateOf(GL_BLEND_DST_RGB)),
      blend(glIsEnabled(GL_BLEND)),
      scissor(glIsEnabled(GL_SCISSOR_TEST)) {
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    glActiveTexture(GL_TEXTURE0);
    // The query reads the active unit, so unit 0 must be active first.
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer)
    texture = stateOf(GL_TEXTURE_BINDING_2D);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

GlStateGuard::~GlStateGuard() {
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
    glActiveTexture(static_cast<GLenum>(unit));
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(framebuffer));
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(vertices));
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLuint>(indices));
    glUseProgram(static_cast<GLuint>(program));
    glBlendFunc(static_cast<GLenum>(blendFrom), static_cast<GLenum>(blendTo));
    setEnabled(GL_BLEND, blend);
    setEnabled(GL_SCISSOR_TEST, scissor);
    glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
}

GLuint buildGlProgram(const char* vertexText, const char* fragmentText,
                      std::initializer_list<const char*> attributes) {
    const GLuint program = glCreateProgram();
    for (const GLuint shader :
         {compile(GL_VERTEX_SHADER, vertexText), compile(GL_FRAGMENT_SHADER, fragmentText)}) {
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
    GLuint location = 0;
    for (const char* attribute : attributes) {
        glBindAttribLocation(program, location++, attribute);
    }
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE) {
        std::array<char, 256> log{};
        glGetProgramInfoLog(program, static_cast<GLsizei>(log.size()), nullptr, log.data());
        throw hostkit::HostError(std::string("cannot link a shader program: ") + log.data());
    }
    return program;
}

}  // namespace app
