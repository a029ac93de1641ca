#pragma once

#include <dlfcn.h>

#include <stdexcept>

#include "fuzz/native_methods.h"

namespace robust {

/// The library as a JVM has it: opened at run time and closed in the end. Nothing of this program
/// links it, so each test gets one that has just been loaded.
class LoadedLibrary {
public:
    LoadedLibrary() : handle(dlopen(VELMORA_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
        if (!handle) {
            throw std::runtime_error(dlerror());
        }
        methods = fuzz::findMethods(handle);
    }
    ~LoadedLibrary() { unload(); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    void unload() {
        if (handle) {
            dlclose(handle);
            handle = nullptr;
        }
    }
    static bool isLoaded() {
        void* const found = dlopen(VELMORA_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
        if (found) {
            dlclose(found);
        }
        return found != nullptr;
    }

    fuzz::NativeMethods methods{};

private:
    void* handle;
};

}  // namespace robust
