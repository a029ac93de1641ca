#pragma once

#include <jni.h>

#include <cstdint>

// Host arrays are pinned at the start of a native method, without asking whether that makes a copy,
// and released at its end in the same order, with write-back. Null means that the host is out of
// memory: an exception is pending, and nothing may be pinned any more, only released.

namespace velmora {

inline jfloat* pin(JNIEnv* env, jfloatArray array) {
    return env->GetFloatArrayElements(array, nullptr);
}
inline jshort* pin(JNIEnv* env, jshortArray array) {
    return env->GetShortArrayElements(array, nullptr);
}

inline void release(JNIEnv* env, jfloatArray array, jfloat* elements) {
    if (elements != nullptr) {
        env->ReleaseFloatArrayElements(array, elements, 0);
    }
}
inline void release(JNIEnv* env, jshortArray array, jshort* elements) {
    if (elements != nullptr) {
        env->ReleaseShortArrayElements(array, elements, 0);
    }
}

/// Mesh indices are unsigned; Java has no such type.
inline std::uint16_t* asIndices(jshort* elements) {
    return reinterpret_cast<std::uint16_t*>(elements);
}

}  // namespace velmora
