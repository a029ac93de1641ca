#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

#include "solver/float_grid.h"

namespace velmora::test {

/// Which of the two guard pages a block touches.
enum class Against { front, back };
constexpr Against bothSides[] = {Against::front, Against::back};

/// `count` elements between two pages that end the program when they are read or written. The rest
/// of the mapped pages holds a filler.
template <class T>
class GuardedBlock {
public:
    GuardedBlock(std::size_t count, Against side) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t bytes = count * sizeof(T);
        const std::size_t mapped = (bytes + page - 1) / page * page;
        whole_ = {map(mapped + 2 * page), mapped + 2 * page};
        inside_ = whole_.subspan(page, mapped);
        mprotect(whole_.data(), page, PROT_NONE);
        mprotect(whole_.data() + page + mapped, page, PROT_NONE);
        std::ranges::fill(inside_, filler);
        const auto block = side == Against::front ? inside_.first(bytes) : inside_.last(bytes);
        block_ = {reinterpret_cast<T*>(block.data()), count};
    }
    ~GuardedBlock() { munmap(whole_.data(), whole_.size()); }
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;

    std::span<T> elements() const { return block_; }
    T* data() const { return block_.data(); }
    /// Whether the filler around the block still stands.
    bool isIntact() const {
        const auto before = reinterpret_cast<std::uint8_t*>(block_.data()) - inside_.data();
        const auto isFiller = [](std::uint8_t byte) { return byte == filler; };
        return std::all_of(inside_.begin(), inside_.begin() + before, isFiller) &&
               std::all_of(
                   inside_.begin() + before + std::ssize(block_) * std::ptrdiff_t{sizeof(T)},
                   inside_.end(), isFiller);
    }

private:
    static constexpr std::uint8_t filler = 0xA5;
    static std::uint8_t* map(std::size_t bytes) {
        void* const pages =
            mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED) {
            throw std::runtime_error("no memory for guarded pages");
        }
        return static_cast<std::uint8_t*>(pages);
    }

    std::span<std::uint8_t> whole_, inside_;
    std::span<T> block_;
};

/// What a block is filled with: values in [-limit, limit], or anything a float can hold.
struct Fill {
    float limit;
    bool wild = false;
};

inline void fillRandomly(std::span<float> values, Fill fill, std::mt19937& random) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float wildValues[] = {std::numeric_limits<float>::quiet_NaN(),
                                    infinity,
                                    -infinity,
                                    3e38f,
                                    -3e38f,
                                    1e10f,
                                    -1e10f,
                                    -0.0f};
    for (float& value : values) {
        value = (static_cast<float>(random() % 65536) / 32768.0f - 1.0f) * fill.limit;
        if (fill.wild && random() % 4 == 0) {
            value = wildValues[random() % std::size(wildValues)];
        }
    }
}

/// A grid in guarded pages with random contents.
struct GuardedGrid {
    GuardedGrid(int width, int height, int floats, Against side, Fill fill, std::mt19937& random)
        : block(static_cast<std::size_t>(width * height * floats), side),
          grid{block.data(), width, height} {
        fillRandomly(block.elements(), fill, random);
    }
    GuardedBlock<float> block;
    FloatGrid grid;
};

/// 32-bit NEON takes subnormals for 0, the scalar unit beside it does not.
#if defined(__ARM_NEON) && !defined(__aarch64__)
constexpr bool lanesFlushSubnormals = true;
#else
constexpr bool lanesFlushSubnormals = false;
#endif

/// The same bits; a NaN is like any other, since its bits follow the order of operands.
inline bool isSame(float a, float b) {
    constexpr float smallest = std::numeric_limits<float>::min();
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b)) ||
           (lanesFlushSubnormals && std::abs(a) < smallest && std::abs(b) < smallest);
}

inline testing::AssertionResult areSame(std::span<const float> actual,
                                        std::span<const float> expected) {
    if (actual.size() != expected.size()) {
        return testing::AssertionFailure() << actual.size() << " floats, not " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!isSame(actual[i], expected[i])) {
            return testing::AssertionFailure() << "element " << i << " is " << std::hexfloat
                                               << actual[i] << ", not " << expected[i];
        }
    }
    return testing::AssertionSuccess();
}

}  // namespace velmora::test
