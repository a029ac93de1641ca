#include "hostkit/gl_observer.h"

#include <GLES2/gl2.h>

// The linker option --wrap makes the library call these wrappers. It also renames Emscripten's functions, so that their
// names begin with __real_. In a lost context, no program can be linked, so the library passes program 0 to
// glGetAttribLocation. Emscripten's function would throw a JavaScript TypeError. The wrapper returns -1, as other GL
// implementations do.

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
