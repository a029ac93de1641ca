#include "tests/robust/refused_memory.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/robust/loaded_library.h"

namespace robust {

namespace {

std::atomic<bool> isCounting = false, refusesAllFromThere = false;
std::atomic<int> firstRefused = 0, allocationsAsked = 0;

bool isRefused(void* caller) {
    if (!isCounting || !isInLibrary(caller)) {
        return false;
    }
    const int number = ++allocationsAsked;
    return number == firstRefused || (refusesAllFromThere && number > firstRefused);
}

}  // namespace

RefusedMemory::RefusedMemory(int first, Extent extent) {
    refusesAllFromThere = extent == allFromThere;
    firstRefused = first;
    allocationsAsked = 0;
    isCounting = true;
}

RefusedMemory::~RefusedMemory() {
    isCounting = false;
}

int RefusedMemory::asked() const {
    return allocationsAsked;
}

}  // namespace robust

using robust::isRefused;

// The library's imports bind to these before those of the C and C++ libraries.
#pragma GCC visibility push(default)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    return isRefused(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t number, std::size_t size) {
    return isRefused(__builtin_return_address(0)) ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* block, std::size_t size) {
    return isRefused(__builtin_return_address(0)) ? nullptr : __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return isRefused(__builtin_return_address(0)) ? nullptr : __libc_memalign(alignment, size);
}
char* strdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = isRefused(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}
}
void* operator new(std::size_t size) {
    void* const block = isRefused(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
    return block ? block : throw std::bad_alloc();
}
#pragma GCC visibility pop
