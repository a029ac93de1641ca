#pragma once

#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "host/native_for_velmora.h"

namespace fuzz {

// clang-format off
#define VELMORA_FOR_EACH_METHOD(X)                                                   \
    X(onInitSetting) X(onInitUVHBuffer) X(onInitGPU) X(LoadTextures) X(onDrawFrame)  \
    X(getClearInkValue) X(clearInkValue) X(onTouch) X(initWaters) X(ripple) X(move)
// clang-format on

/// The native methods of one loaded copy of the library.
struct NativeMethods {
#define VELMORA_METHOD(name) \
    decltype(&Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##name) name;
    VELMORA_FOR_EACH_METHOD(VELMORA_METHOD)
#undef VELMORA_METHOD
};

/// The methods of a handle of dlopen, or of the library that the program links with RTLD_DEFAULT.
inline NativeMethods findMethods(void* library) {
    NativeMethods methods{};
    const auto find = [library](auto& method, const std::string& name) {
        const std::string symbol =
            "Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_" + name;
        void* const found = dlsym(library, symbol.c_str());
        if (!found) {
            throw std::runtime_error("the library lacks " + name);
        }
        method = reinterpret_cast<std::remove_reference_t<decltype(method)>>(found);
    };
#define VELMORA_METHOD(name) find(methods.name, #name);
    VELMORA_FOR_EACH_METHOD(VELMORA_METHOD)
#undef VELMORA_METHOD
    return methods;
}

}  // namespace fuzz
