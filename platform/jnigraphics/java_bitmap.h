#pragma once

#include <android/bitmap.h>
#include <jni.h>

// Functions that read bitmaps of the Java class android.graphics.Bitmap through JNI.

/// Returns true if the Java class android.graphics.Bitmap is initialised in this process. Then every bitmap is an
/// object of that class.
bool bitmapsAreJavaObjects();

int getJavaBitmapInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info);

/// Stores the address of the pixels, which is valid while `bitmap` is reachable.
int getJavaBitmapPixels(JNIEnv* env, jobject bitmap, void** pixels);
