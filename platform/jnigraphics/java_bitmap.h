#pragma once

#include <android/bitmap.h>
#include <jni.h>

// Reads bitmaps that are objects of the Java class android.graphics.Bitmap through JNI.

/// Returns true if android.graphics.Bitmap has been initialised in this process. All bitmaps are then Java objects.
bool bitmapsAreJavaObjects();

int getJavaBitmapInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info);

/// Stores the address of the pixels, which is valid while `bitmap` is reachable.
int getJavaBitmapPixels(JNIEnv* env, jobject bitmap, void** pixels);
