#pragma once

#include <android/bitmap.h>

/// The bitmap of a host without a JVM: a pointer to this record, cast to jobject, is its handle. A
/// result below 0 makes the call of that name fail with it, as a recycled or hardware bitmap does
/// on a device.
struct StandInBitmap {
    AndroidBitmapInfo info;
    void* pixels;
    int getInfoResult = 0;
    int lockResult = 0;
    int unlockResult = 0;
    int lockCount = 0;
};
