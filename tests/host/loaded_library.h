#pragma once

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <stdexcept>

#include "fuzz/native_methods.h"

namespace testhost {

/// Returns true if an address, for example a return address, is in the library. Takes no lock and allocates no memory.
inline bool isInLibrary(void* address) {
    dl_find_object object{};
    return _dl_find_object(address, &object) == 0 &&
           std::strstr(object.dlfo_link_map->l_name, "libpeluxVelmora");
}

/// Opens the library at run time and closes it in the destructor, as a JVM does. The test program does not link the
/// library, so each test starts with a freshly loaded one.
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
