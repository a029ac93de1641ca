#pragma once

#include <android/bitmap.h>

// Bitmaps that are objects of the Java class android.graphics.Bitmap, read through JNI.

/// Whether that class has been initialised in this process: then no other bitmap is to be had.
bool bitmapsAreJavaObjects();

int getJavaBitmapInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info);

/// The pixels stay where they are while `bitmap` is reachable.
int getJavaBitmapPixels(JNIEnv* env, jobject bitmap, void** pixels);
