#pragma once

#include <jni.h>

// Declares the native methods under their exported names. What each takes and gives is in velmora/native_methods.inc.

/// The exported name of a native method.
#define VELMORA_NATIVE_NAME(method) \
    Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##method

/// The head of a native method's definition: VELMORA_NATIVE(void, onInitGPU)(JNIEnv*, jobject) {...}
#define VELMORA_NATIVE(result, method) \
    extern "C" JNIEXPORT result JNICALL VELMORA_NATIVE_NAME(method)

#define VELMORA_METHOD(result, name, parameters) VELMORA_NATIVE(result, name) parameters;
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
