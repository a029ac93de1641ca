#pragma once

#include <dlfcn.h>

#include <stdexcept>
#include <string>
#include <type_traits>

#include "velmora/native_for_velmora.h"

namespace fuzz {

/// Pointers to the native methods of one loaded copy of the library.
struct NativeMethods {
#define VELMORA_METHOD(result, name, parameters) decltype(&VELMORA_NATIVE_NAME(name)) name;
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
};

/// Finds the native methods in a handle from dlopen. For RTLD_DEFAULT, finds them in the library that is linked to the
/// program.
inline NativeMethods findMethods(void* library) {
    NativeMethods methods{};
    const auto find = [library](auto& method, const char* symbol) {
        void* const found = dlsym(library, symbol);
        if (!found) {
            throw std::runtime_error(std::string("the library lacks ") + symbol);
        }
        method = reinterpret_cast<std::remove_reference_t<decltype(method)>>(found);
    };
#define VELMORA_STRING(text) #text
#define VELMORA_SYMBOL(name) VELMORA_STRING(name)
#define VELMORA_METHOD(result, name, parameters) \
    find(methods.name, VELMORA_SYMBOL(VELMORA_NATIVE_NAME(name)));
#include "velmora/native_methods.inc"
#undef VELMORA_METHOD
#undef VELMORA_SYMBOL
#undef VELMORA_STRING
    return methods;
}

}  // namespace fuzz
