// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// Declarations of the native methods under their exported names.

#include <jni.h>

// velmora/native_methods.inc documents each method.

/// Exported name of a native method, as JNI expects it.
#define VELMORA_NATIVE_NAME(method) \
    Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##method

/// Begins the definition of a native method: VELMORA_NATIVE(void, onInitGPU)(JNIEnv*, jobject) {...}
#define VELMORA_NATIVE(result, method) \
    extern "C" JNIEXPORT result JNICALL VELMORA_NATIVE_NAME(method)

/// Declares one method of native_methods.inc.
#define VELMORA_METHOD(result, name, parameters) VELMORA_NATIVE(result, name) parameters;
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
