#pragma once

#include <android/bitmap.h>

/// A bitmap of a host that has no JVM. The host passes a pointer to this struct as the jobject. A negative value in one
/// of the three result fields makes the matching AndroidBitmap function return this value. On a device, these functions
/// fail in this way for a recycled bitmap.
struct StandInBitmap {
    AndroidBitmapInfo info;
    void* pixels;
    int getInfoResult = 0;
    int lockResult = 0;
    int unlockResult = 0;
    int lockCount = 0;
};
