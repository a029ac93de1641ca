#include <cstring>

// Replaces memcpy and memset of the C library by instructions of WebAssembly. Compiled without link-time optimisation,
// which could remove a function before the code generator calls it.

extern "C" {

void* memcpy(void* to, const void* from, std::size_t bytes) {
    return __builtin_memcpy(to, from, bytes);
}

void* memset(void* to, int value, std::size_t bytes) {
    return __builtin_memset(to, value, bytes);
}
}
