#pragma once

#include <android/bitmap.h>

/// A bitmap of a host that has no JVM. The host passes a pointer to this struct as the jobject. A negative value in a
/// result field makes the call of the same name fail with that value, as calls for a recycled bitmap do on a device.
struct StandInBitmap {
    AndroidBitmapInfo info;
    void* pixels;
    int getInfoResult = 0;
    int lockResult = 0;
    int unlockResult = 0;
    int lockCount = 0;
};
