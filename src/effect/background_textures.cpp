#include "effect/background_textures.h"

#include <GLES2/gl2.h>
#include <android/bitmap.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace velmora {

namespace {

constexpr std::size_t bytesPerPixel = 4;

GLuint* slotOf(EffectState& state, int index) {
    switch (index) {
        case 0:
            return &state.waterTexture;
        case 1:
            return &state.backgroundTexture;
        case 2:
            return &state.backgroundTexture2;
        default:
            return nullptr;
    }
}

/// Returns true if the pixels can be read as 32-bit RGBA. Bitmaps that report neither format nor stride are accepted,
/// because some bitmap libraries report neither.
bool isRgba8888(const AndroidBitmapInfo& info) {
    const bool isOtherFormat =
        info.format != ANDROID_BITMAP_FORMAT_NONE && info.format != ANDROID_BITMAP_FORMAT_RGBA_8888;
    const bool isTooShort = info.stride != 0 && info.stride < info.width * bytesPerPixel;
    return !isOtherFormat && !isTooShort;
}

bool isPadded(const AndroidBitmapInfo& info) {
    return info.stride > info.width * bytesPerPixel;
}

/// Returns a copy of the pixel rows without the padding bytes at their ends, because GL ES 2 cannot skip padding.
/// Returns null if memory runs out. The caller frees the copy.
std::uint8_t* withoutPadding(const AndroidBitmapInfo& info, const void* pixels) {
    const std::size_t rowBytes = info.width * bytesPerPixel;
    auto* const packed = static_cast<std::uint8_t*>(std::malloc(rowBytes * info.height));
    for (std::size_t y = 0; packed != nullptr && y < info.height; ++y) {
        std::memcpy(packed + y * rowBytes,
                    static_cast<const std::uint8_t*>(pixels) + y * info.stride, rowBytes);
    }
    return packed;
}

/// Deletes the texture with the GL name `slot`, creates a texture from `pixels` and stores its GL name in `slot`. The
/// pixel rows have no padding.
void replaceTexture(GLuint& slot, const AndroidBitmapInfo& info, const void* pixels) {
    if (slot != 0) {
        glDeleteTextures(1, &slot);
        slot = 0;  // if glGenTextures fails, it leaves this variable unchanged
    }
    glGenTextures(1, &slot);
    glBindTexture(GL_TEXTURE_2D, slot);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, static_cast<GLsizei>(info.width),
                 static_cast<GLsizei>(info.height), 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
}

/// Works like replaceTexture, but the pixel rows can have padding. Padded rows are copied first; if memory runs out for
/// the copy, the old texture stays. Returns an ANDROID_BITMAP_RESULT code.
int replaceTextureOfRows(GLuint& slot, const AndroidBitmapInfo& info, const void* pixels) {
    if (!isPadded(info)) {
        replaceTexture(slot, info, pixels);
        return ANDROID_BITMAP_RESULT_SUCCESS;
    }
    std::uint8_t* const packed = withoutPadding(info, pixels);
    if (packed == nullptr) {
        return ANDROID_BITMAP_RESULT_ALLOCATION_FAILED;
    }
    replaceTexture(slot, info, packed);
    std::free(packed);
    return ANDROID_BITMAP_RESULT_SUCCESS;
}

}  // namespace

int loadTexture(EffectState& state, JNIEnv* env, jobject bitmap, int index) {
    GLuint* const slot = slotOf(state, index);
    if (slot == nullptr) {
        return ANDROID_BITMAP_RESULT_BAD_PARAMETER;
    }
    AndroidBitmapInfo info{};
    if (const int result = AndroidBitmap_getInfo(env, bitmap, &info); result < 0) {
        return result;
    }
    if (!isRgba8888(info)) {
        return ANDROID_BITMAP_RESULT_BAD_PARAMETER;
    }
    void* pixels = nullptr;
    if (const int result = AndroidBitmap_lockPixels(env, bitmap, &pixels); result < 0) {
        return result;
    }
    const int result = replaceTextureOfRows(*slot, info, pixels);
    const int unlocked = AndroidBitmap_unlockPixels(env, bitmap);
    return result < 0 ? result : unlocked;
}

}  // namespace velmora
