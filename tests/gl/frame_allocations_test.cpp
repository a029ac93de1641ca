#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <new>

#include "hostkit/effect_host.h"
#include "hostkit/native.h"

// Counts the memory that the library takes, its worker too: each call of an allocation function
// whose caller lies in the library.

namespace {

dl_find_object library{};
std::atomic<int> allocations = 0;

void count(const void* caller) {
    allocations += library.dlfo_map_start <= caller && caller < library.dlfo_map_end;
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
}
void* operator new(std::size_t size) {
    count(__builtin_return_address(0));
    void* const block = __libc_malloc(size);
    return block ? block : throw std::bad_alloc();
}
#pragma GCC visibility pop

namespace {

TEST(FrameAllocations, NoneAfterTheFirstTwoFrames) {
    ASSERT_EQ(_dl_find_object(reinterpret_cast<void*>(hostkit::native::onDrawFrame), &library), 0);
    hostkit::EffectHost host({.width = 1080, .height = 1920});
    EXPECT_GE(allocations, 8) << "the grids were not seen";
    for (int frame = 0; frame < 12; ++frame) {
        allocations = frame <= 2 ? 0 : allocations.load();
        host.touch({frame == 0 ? hostkit::TouchAction::down : hostkit::TouchAction::move,
                    300.0 + 12 * frame, 400.0 + 7 * frame, 1.0f});
        host.frame();
    }
    EXPECT_EQ(allocations, 0);
}

}  // namespace
