#include <EGL/egl.h>
#include <GLES2/gl2.h>
#include <javahost_HostKit.h>
#include <jni.h>

#include <cstdint>
#include <span>

#include "hostkit/gl_context.h"
#include "hostkit/host_error.h"
#include "hostkit/image.h"
#include "hostkit/screen.h"

namespace {

hostkit::GlContext* contextOf(jlong handle) {
    return reinterpret_cast<hostkit::GlContext*>(handle);
}

jbyteArray toJava(JNIEnv* env, std::span<const std::uint8_t> bytes) {
    const auto length = static_cast<jsize>(bytes.size());
    const jbyteArray array = env->NewByteArray(length);
    if (array != nullptr) {
        env->SetByteArrayRegion(array, 0, length, reinterpret_cast<const jbyte*>(bytes.data()));
    }
    return array;
}

EGLSurface surfaceOf(jlong handle) {
    return reinterpret_cast<EGLSurface>(handle);
}

/// Returns the EGL configuration of the current context. All surfaces of the context must have this configuration.
EGLConfig currentConfig() {
    const EGLDisplay display = eglGetCurrentDisplay();
    EGLint id = 0;
    eglQueryContext(display, eglGetCurrentContext(), EGL_CONFIG_ID, &id);
    const EGLint wanted[] = {EGL_CONFIG_ID, id, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, wanted, &config, 1, &count);
    return config;
}

void throwHostException(JNIEnv* env, const char* line) {
    if (const jclass type = env->FindClass("velmora/host/HostException")) {
        env->ThrowNew(type, line);
    }
}

}  // namespace

jlong Java_javahost_HostKit_createContext(JNIEnv* env, jclass, jint width, jint height) {
    try {
        return reinterpret_cast<jlong>(new hostkit::GlContext(width, height));
    } catch (const hostkit::HostError& error) {
        throwHostException(env, error.what());
        return 0;
    }
}

void Java_javahost_HostKit_destroyContext(JNIEnv*, jclass, jlong context) {
    delete contextOf(context);
}

jlong Java_javahost_HostKit_createSurface(JNIEnv* env, jclass, jint width, jint height) {
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLSurface surface =
        eglCreatePbufferSurface(eglGetCurrentDisplay(), currentConfig(), size);
    if (surface == EGL_NO_SURFACE) {
        throwHostException(env, "cannot make a surface: make a GL context current first");
    }
    return reinterpret_cast<jlong>(surface);
}

void Java_javahost_HostKit_useSurface(JNIEnv* env, jclass, jlong surface) {
    if (!eglMakeCurrent(eglGetCurrentDisplay(), surfaceOf(surface), surfaceOf(surface),
                        eglGetCurrentContext())) {
        throwHostException(env, "cannot make a surface current: it belongs to another context");
    }
}

void Java_javahost_HostKit_destroySurface(JNIEnv*, jclass, jlong surface) {
    eglDestroySurface(eglGetCurrentDisplay(), surfaceOf(surface));
}

jint Java_javahost_HostKit_countObjects(JNIEnv*, jclass) {
    constexpr GLuint lastName = 500;  // GL gives out small names first
    jint count = 0;
    for (GLuint name = 1; name <= lastName; ++name) {
        count += glIsBuffer(name) + glIsTexture(name) + glIsFramebuffer(name) + glIsProgram(name);
    }
    return count;
}

jbyteArray Java_javahost_HostKit_readScreen(JNIEnv* env, jclass, jint width, jint height) {
    return toJava(env, hostkit::readScreen(width, height));
}

jbyteArray Java_javahost_HostKit_makeTestImage(JNIEnv* env, jclass, jint width, jint height) {
    return toJava(env, hostkit::makeTestImage(width, height).rgba);
}
