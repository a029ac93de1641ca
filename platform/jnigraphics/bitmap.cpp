#include <android/bitmap.h>
#include <jni.h>
#include <standin_bitmap.h>

#include "java_bitmap.h"

#pragma GCC visibility push(default)

static StandInBitmap& bitmapOf(jobject bitmap) {
    return *reinterpret_cast<StandInBitmap*>(bitmap);
}

int AndroidBitmap_getInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info) {
    if (bitmapsAreJavaObjects()) {
        return getJavaBitmapInfo(env, bitmap, info);
    }
    if (bitmapOf(bitmap).getInfoResult < 0) {
        return bitmapOf(bitmap).getInfoResult;
    }
    *info = bitmapOf(bitmap).info;
    return ANDROID_BITMAP_RESULT_SUCCESS;
}

int AndroidBitmap_lockPixels(JNIEnv* env, jobject bitmap, void** pixels) {
    if (bitmapsAreJavaObjects()) {
        return getJavaBitmapPixels(env, bitmap, pixels);
    }
    if (bitmapOf(bitmap).lockResult < 0) {
        return bitmapOf(bitmap).lockResult;
    }
    ++bitmapOf(bitmap).lockCount;
    *pixels = bitmapOf(bitmap).pixels;
    return ANDROID_BITMAP_RESULT_SUCCESS;
}

int AndroidBitmap_unlockPixels(JNIEnv*, jobject bitmap) {
    if (bitmapsAreJavaObjects()) {
        return ANDROID_BITMAP_RESULT_SUCCESS;
    }
    --bitmapOf(bitmap).lockCount;
    return bitmapOf(bitmap).unlockResult;
}

#pragma GCC visibility pop
