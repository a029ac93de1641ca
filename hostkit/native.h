#pragma once

#include "velmora/native_for_velmora.h"

/// Short names for the native methods, for example `hostkit::native::onDrawFrame`. They equal the names in the Java
/// class.
namespace hostkit::native {

/// @cond
#define VELMORA_METHOD(result, name, parameters) \
    inline constexpr auto& name = VELMORA_NATIVE_NAME(name);
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
/// @endcond

}  // namespace hostkit::native
