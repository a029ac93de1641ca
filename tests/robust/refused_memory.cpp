#include "tests/robust/refused_memory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/host/loaded_library.h"

extern "C" {
// NOLINTBEGIN(readability-identifier-naming)
void* __libc_malloc(std::size_t size);
void __libc_free(void* block);
// NOLINTEND(readability-identifier-naming)
}

namespace robust {

namespace {

std::atomic<bool> isCounting = false, refusesAllFromThere = false;
std::atomic<int> firstRefused = 0, allocationsAsked = 0;
/// Pointers to the blocks of memory that the library has allocated and not freed; unused elements are null. The library
/// holds fewer than 64 blocks at any time.
std::array<std::atomic<void*>, 64> held{};

bool isRefused() {
    if (!isCounting) {
        return false;
    }
    const int number = ++allocationsAsked;
    return number == firstRefused || (refusesAllFromThere && number > firstRefused);
}

/// Replaces the pointer `last` in `held` by `next`.
void replaceHeld(void* last, void* next) {
    for (std::atomic<void*>& place : held) {
        if (void* found = last; place.compare_exchange_strong(found, next)) {
            return;
        }
    }
}

template <class Allocation>
void* allocate(void* caller, Allocation allocation) {
    const bool isForLibrary = testhost::isInLibrary(caller);
    if (isForLibrary && isRefused()) {
        return nullptr;
    }
    void* const block = allocation();
    if (isForLibrary && block) {
        replaceHeld(nullptr, block);
    }
    return block;
}

/// Frees a block and removes it from `held`, even if the return address is outside the library. That is the case if the
/// library calls free in a tail call.
void release(void* block) {
    if (block) {
        replaceHeld(block, nullptr);
    }
    __libc_free(block);
}

}  // namespace

RefusedMemory::RefusedMemory(int first, Extent extent) {
    refusesAllFromThere = extent == Extent::allFromThere;
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

long blocksHeld() {
    return std::ranges::count_if(held, [](const auto& place) { return place != nullptr; });
}

}  // namespace robust

using robust::allocate, robust::release;
#define CALLER __builtin_return_address(0)

// The library's calls use the functions below instead of those of the C and C++ libraries. tools/check-symbols checks
// that the library imports no other allocation function.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) {
    return allocate(CALLER, [=] { return __libc_malloc(size); });
}
char* strdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = allocate(CALLER, [=] { return __libc_malloc(size); });
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}
void free(void* block) {
    release(block);
}
}
void* operator new(std::size_t size) {
    void* const block = allocate(CALLER, [=] { return __libc_malloc(size); });
    return block ? block : throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
#pragma GCC visibility pop
