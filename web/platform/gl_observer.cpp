#include "hostkit/gl_observer.h"

#include <GLES2/gl2.h>

// The linker option --wrap lets the library call the wrappers below. __real_ names the functions of Emscripten.
// Emscripten's glGetAttribLocation throws a JavaScript TypeError for the name 0, which the library passes if no program
// links in a lost context. The wrapper returns -1, as every other GL does.

namespace hostkit {

GlObserver& sharedGlObserver() {
    static GlObserver observer;
    return observer;
}

}  // namespace hostkit

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void __real_glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices);
void __real_glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width,
                         GLsizei height, GLint border, GLenum format, GLenum type,
                         const void* pixels);
GLint __real_glGetAttribLocation(GLuint program, const GLchar* name);

GLint __wrap_glGetAttribLocation(GLuint program, const GLchar* name) {
    return program == 0 ? -1 : __real_glGetAttribLocation(program, name);
}

void __wrap_glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    hostkit::sharedGlObserver().noteCall("glDrawElements");
    __real_glDrawElements(mode, count, type, indices);
}

void __wrap_glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width,
                         GLsizei height, GLint border, GLenum format, GLenum type,
                         const void* pixels) {
    hostkit::sharedGlObserver().noteCall("glTexImage2D");
    hostkit::sharedGlObserver().noteUpload(width, height, pixels);
    __real_glTexImage2D(target, level, internalformat, width, height, border, format, type, pixels);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
