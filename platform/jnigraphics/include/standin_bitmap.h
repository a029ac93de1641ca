#pragma once

#include <android/bitmap.h>

/// Bitmap of a host that has no JVM. Its jobject handle is a pointer to this struct. Each result field can make the
/// call of the same name fail: a negative result is returned as the error code, as for a recycled bitmap on a device.
struct StandInBitmap {
    AndroidBitmapInfo info;
    void* pixels;
    int getInfoResult = 0;
    int lockResult = 0;
    int unlockResult = 0;
    int lockCount = 0;
};
