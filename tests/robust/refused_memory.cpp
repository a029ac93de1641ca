#include "tests/robust/refused_memory.h"

#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace robust {

namespace {

/// The library's addresses, for what is asked too often for isLibrary.
std::atomic<std::uintptr_t> libraryBegin = 0, libraryEnd = 0;

int findLibrary(dl_phdr_info* object, std::size_t, void*) {
    if (!std::strstr(object->dlpi_name, "libpeluxVelmora")) {
        return 0;
    }
    libraryBegin = libraryEnd = object->dlpi_addr;
    for (int part = 0; part < object->dlpi_phnum; ++part) {
        const ElfW(Phdr)& header = object->dlpi_phdr[part];
        if (header.p_type == PT_LOAD) {
            libraryEnd = object->dlpi_addr + header.p_vaddr + header.p_memsz;
        }
    }
    return 1;
}

/// 0 while no allocation is to fail.
std::atomic<int> firstRefused = 0, allocationsAsked = 0;
std::atomic<bool> refusesAllFromThere = false;

bool isRefused(void* caller) {
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    if (firstRefused == 0 || address < libraryBegin || address >= libraryEnd) {
        return false;
    }
    const int number = ++allocationsAsked;
    return number == firstRefused || (refusesAllFromThere && number > firstRefused);
}

}  // namespace

RefusedMemory::RefusedMemory(int first, Extent extent) {
    dl_iterate_phdr(findLibrary, nullptr);
    refusesAllFromThere = extent == allFromThere;
    allocationsAsked = 0;
    firstRefused = first;
}

RefusedMemory::~RefusedMemory() {
    firstRefused = 0;
}

int RefusedMemory::asked() const {
    return allocationsAsked;
}

}  // namespace robust

// The library's imports bind to these before those of the C library.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) {
    static auto* const real = reinterpret_cast<decltype(&malloc)>(dlsym(RTLD_NEXT, "malloc"));
    if (robust::isRefused(__builtin_return_address(0))) {
        return nullptr;
    }
    return real(size);
}

char* strdup(const char* text) {
    static auto* const real = reinterpret_cast<decltype(&strdup)>(dlsym(RTLD_NEXT, "strdup"));
    if (robust::isRefused(__builtin_return_address(0))) {
        return nullptr;
    }
    return real(text);
}
}
#pragma GCC visibility pop
