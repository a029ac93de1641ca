#include <javahost_HostKit.h>

#include <cstdint>
#include <span>

#include "hostkit/gl_context.h"
#include "hostkit/host_error.h"
#include "hostkit/picture.h"

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

void throwHostException(JNIEnv* env, const char* line) {
    if (const jclass type = env->FindClass("javahost/HostException")) {
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

jbyteArray Java_javahost_HostKit_readPixels(JNIEnv* env, jclass, jlong context) {
    return toJava(env, contextOf(context)->readPixels());
}

jbyteArray Java_javahost_HostKit_makeSheen(JNIEnv* env, jclass, jint size) {
    return toJava(env, hostkit::makeSheen(size).rgba);
}

jbyteArray Java_javahost_HostKit_makeTestPicture(JNIEnv* env, jclass, jint width, jint height) {
    return toJava(env, hostkit::makeTestPicture(width, height).rgba);
}
