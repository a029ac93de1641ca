#pragma once

#include "host/native_for_velmora.h"

/// The library's native methods under the names that the host's Java class gives them.
namespace hostkit::native {

#define HOSTKIT_NATIVE(method)      \
    inline constexpr auto& method = \
        Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##method

HOSTKIT_NATIVE(onInitSetting);
HOSTKIT_NATIVE(onInitUVHBuffer);
HOSTKIT_NATIVE(onInitGPU);
HOSTKIT_NATIVE(LoadTextures);
HOSTKIT_NATIVE(onDrawFrame);
HOSTKIT_NATIVE(getClearInkValue);
HOSTKIT_NATIVE(clearInkValue);
HOSTKIT_NATIVE(onTouch);
HOSTKIT_NATIVE(initWaters);
HOSTKIT_NATIVE(ripple);
HOSTKIT_NATIVE(move);

#undef HOSTKIT_NATIVE

}  // namespace hostkit::native
