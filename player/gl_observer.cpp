#include "hostkit/gl_observer.h"

#include <GLES2/gl2.h>

#include "hostkit/next_function.h"

// The player defines two GL functions that the library imports. Each passes the call to the observer, and then to the
// function of the GL library.

namespace hostkit {

GlObserver& sharedGlObserver() {
    static GlObserver observer;
    return observer;
}

}  // namespace hostkit

#pragma GCC visibility push(default)

void GL_APIENTRY glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    static auto* const real = hostkit::nextFunction<decltype(glDrawElements)>("glDrawElements");
    hostkit::sharedGlObserver().noteCall("glDrawElements");
    real(mode, count, type, indices);
}

void GL_APIENTRY glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width,
                              GLsizei height, GLint border, GLenum format, GLenum type,
                              const void* pixels) {
    static auto* const real = hostkit::nextFunction<decltype(glTexImage2D)>("glTexImage2D");
    hostkit::sharedGlObserver().noteCall("glTexImage2D");
    hostkit::sharedGlObserver().noteUpload(width, height, pixels);
    real(target, level, internalformat, width, height, border, format, type, pixels);
}

#pragma GCC visibility pop
