#pragma once

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace hostkit {

/// Returns the function `name` of the next shared library, usually the GL library. A program that replaces a function
/// by its own definition calls the original function in this way. Aborts the program if no library has the function.
/// @param name name of the function
template <class Function>
Function* nextFunction(const char* name) {
    void* const found = dlsym(RTLD_NEXT, name);
    if (!found) {
        std::fprintf(stderr, "cannot find %s in the GL library; check that Mesa is installed\n",
                     name);
        std::abort();
    }
    return reinterpret_cast<Function*>(found);
}

}  // namespace hostkit
