#pragma once

#include <android/bitmap.h>

/// Bitmap of a host without a JVM. Its jobject handle is a pointer to this struct. A negative result
/// makes the call of that name fail with this code, as for a recycled or hardware bitmap on a device.
struct StandInBitmap {
    AndroidBitmapInfo info;
    void* pixels;
    int getInfoResult = 0;
    int lockResult = 0;
    int unlockResult = 0;
    int lockCount = 0;
};
