#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <new>

#include "hostkit/effect_host.h"

// Counts the memory that the library takes: each call of an allocation function whose caller lies
// in the library, or which its worker makes. Not counted is what the C library takes for the
// worker's thread.

namespace {

std::uintptr_t libraryBegin = 0, libraryEnd = 0;
std::atomic<int> allocations = 0, threads = 0;
thread_local bool isWorker = false;
void* (*workerEntry)(void*) = nullptr;

bool isInLibrary(const void* caller) {
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    return libraryBegin <= address && address < libraryEnd;
}

void count(const void* caller) {
    if (isWorker || isInLibrary(caller)) {
        ++allocations;
    }
}

int findLibrary(dl_phdr_info* object, std::size_t, void*) {
    if (!std::strstr(object->dlpi_name, "libpeluxVelmora")) {
        return 0;
    }
    libraryBegin = object->dlpi_addr;
    for (const ElfW(Phdr)* part = object->dlpi_phdr; part != object->dlpi_phdr + object->dlpi_phnum;
         ++part) {
        libraryEnd =
            part->p_type == PT_LOAD ? libraryBegin + part->p_vaddr + part->p_memsz : libraryEnd;
    }
    return 1;
}

void* workerBody(void* argument) {
    isWorker = true;
    void* const result = workerEntry(argument);
    isWorker = false;
    return result;
}

}  // namespace

// The library's imports bind to these before those of the C library.
#pragma GCC visibility push(default)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    count(__builtin_return_address(0));
    return __libc_malloc(size);
}
void* calloc(std::size_t number, std::size_t size) {
    count(__builtin_return_address(0));
    return __libc_calloc(number, size);
}
void* realloc(void* block, std::size_t size) {
    count(__builtin_return_address(0));
    return __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    count(__builtin_return_address(0));
    return __libc_memalign(alignment, size);
}
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*),
                   void* argument) {
    static auto* const real =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    if (!isInLibrary(__builtin_return_address(0))) {
        return real(thread, attributes, entry, argument);
    }
    ++threads;
    workerEntry = entry;
    return real(thread, attributes, workerBody, argument);
}
}
void* operator new(std::size_t size) {
    count(__builtin_return_address(0));
    void* const block = __libc_malloc(size);
    return block ? block : throw std::bad_alloc();
}
#pragma GCC visibility pop

namespace {

TEST(FrameAllocations, NoneAfterTheFirstTwoFrames) {
    ASSERT_NE(dl_iterate_phdr(findLibrary, nullptr), 0);
    hostkit::EffectHost host({.width = 1080, .height = 1920});
    EXPECT_GE(allocations, 8) << "the grids were not seen";
    const auto frame = [&host](int number) {
        host.touch({number == 0 ? hostkit::TouchAction::down : hostkit::TouchAction::move,
                    300.0 + 12 * number, 400.0 + 7 * number, 1.0f});
        host.frame();
    };
    frame(0);
    frame(1);
    allocations = threads = 0;
    for (int number = 2; number < 12; ++number) {
        frame(number);
    }
    std::cout << "allocations in 10 frames at 1080 x 1920: " << allocations << "\n";
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(threads, 10);
}

}  // namespace
