#pragma once

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <stdexcept>

#include "fuzz/native_methods.h"

namespace testhost {

/// Whether an address, such as a caller's, lies in the library. Takes neither lock nor memory.
inline bool isInLibrary(void* address) {
    dl_find_object object{};
    return _dl_find_object(address, &object) == 0 &&
           std::strstr(object.dlfo_link_map->l_name, "libpeluxVelmora");
}

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

}  // namespace testhost
