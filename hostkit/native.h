#pragma once

#include "velmora/native_for_velmora.h"

/// The library's native methods under the names that the host's Java class gives them.
namespace hostkit::native {

#define VELMORA_METHOD(result, name, parameters) \
    inline constexpr auto& name = VELMORA_NATIVE_NAME(name);
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD

}  // namespace hostkit::native
