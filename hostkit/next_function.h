#pragma once

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace hostkit {

/// Returns the library function that a function of the program with the same name replaces. Ends the program if no
/// library has it.
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
