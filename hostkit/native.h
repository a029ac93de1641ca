#pragma once

#include "velmora/native_for_velmora.h"

/// Short names for the library's native methods, for example `hostkit::native::onDrawFrame`. The Java class
/// NativeForVelmora uses the same short names.
namespace hostkit::native {

/// @cond
#define VELMORA_METHOD(result, name, parameters) \
    inline constexpr auto& name = VELMORA_NATIVE_NAME(name);
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
/// @endcond

}  // namespace hostkit::native
