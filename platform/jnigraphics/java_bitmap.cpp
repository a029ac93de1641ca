#include "java_bitmap.h"

#include <cstdint>

namespace {

struct BitmapFields {
    jfieldID width;
    jfieldID height;
    jfieldID rowBytes;
    jfieldID format;
    jfieldID pixels;
};

/// Field IDs of android.graphics.Bitmap. The static initialiser of that class writes them before any thread can use a
/// bitmap.
BitmapFields gFields{};

std::uint32_t unsignedField(JNIEnv* env, jobject object, jfieldID field) {
    return static_cast<std::uint32_t>(env->GetIntField(object, field));
}

}  // namespace

extern "C" JNIEXPORT void JNICALL Java_android_graphics_Bitmap_readBitmapsThroughJni(JNIEnv* env,
                                                                                     jclass type);

void Java_android_graphics_Bitmap_readBitmapsThroughJni(JNIEnv* env, jclass type) {
    BitmapFields found{};
    const auto find = [&](jfieldID& field, const char* name, const char* signature) {
        field = env->GetFieldID(type, name, signature);
        return field != nullptr;
    };
    // Stop at the first failure. A failed look-up leaves a Java exception pending, and JNI forbids further look-ups
    // while an exception is pending.
    if (find(found.width, "width", "I") && find(found.height, "height", "I") &&
        find(found.rowBytes, "rowBytes", "I") && find(found.format, "format", "I") &&
        find(found.pixels, "pixels", "Ljava/nio/ByteBuffer;")) {
        gFields = found;
    }
}

bool bitmapsAreJavaObjects() {
    return gFields.pixels != nullptr;
}

int getJavaBitmapInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info) {
    if (bitmap == nullptr) {
        return ANDROID_BITMAP_RESULT_BAD_PARAMETER;
    }
    info->width = unsignedField(env, bitmap, gFields.width);
    info->height = unsignedField(env, bitmap, gFields.height);
    info->stride = unsignedField(env, bitmap, gFields.rowBytes);
    info->format = env->GetIntField(bitmap, gFields.format);
    info->flags = 0;
    return ANDROID_BITMAP_RESULT_SUCCESS;
}

int getJavaBitmapPixels(JNIEnv* env, jobject bitmap, void** pixels) {
    const jobject buffer = env->GetObjectField(bitmap, gFields.pixels);
    if (buffer == nullptr) {  // the bitmap was recycled
        return ANDROID_BITMAP_RESULT_JNI_EXCEPTION;
    }
    *pixels = env->GetDirectBufferAddress(buffer);
    env->DeleteLocalRef(buffer);
    return ANDROID_BITMAP_RESULT_SUCCESS;
}
