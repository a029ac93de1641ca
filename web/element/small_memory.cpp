#include <cstring>

// Implements memcpy and memset by single WebAssembly instructions instead of the C library's code. This file is
// compiled without link-time optimisation, which could remove the functions before the code generator inserts calls of
// them.

extern "C" {

void* memcpy(void* to, const void* from, std::size_t bytes) {
    return __builtin_memcpy(to, from, bytes);
}

void* memset(void* to, int value, std::size_t bytes) {
    return __builtin_memset(to, value, bytes);
}
}
