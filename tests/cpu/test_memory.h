#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <span>
#include <type_traits>
#include <vector>

#include "simd/lanes.h"
#include "solver/passes.h"

namespace velmora::test {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr int most = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();

/// Side of a block on which the guard page is: before the block (`front`) or after it (`back`). A test must use both
/// sides to find every access outside a block.
enum class Against { front, back };
constexpr Against bothSides[] = {Against::front, Against::back};

/// An array of `count` zeros with a guard page directly before or after it. An access to a guard page ends the program.
template <class T>
class GuardedBlock {
public:
    GuardedBlock(std::size_t count, Against side) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t bytes = count * sizeof(T);
        const std::size_t open = (bytes + page - 1) / page * page;
        size_ = open + 2 * page;
        pages_ = static_cast<std::uint8_t*>(
            mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(pages_ + page, open, PROT_READ | PROT_WRITE);
        const std::size_t start = side == Against::front ? page : page + open - bytes;
        elements_ = {reinterpret_cast<T*>(pages_ + start), count};
    }
    ~GuardedBlock() { munmap(pages_, size_); }
    GuardedBlock(const GuardedBlock&) = delete;
    GuardedBlock& operator=(const GuardedBlock&) = delete;

    std::span<T> elements() const { return elements_; }
    T* data() const { return elements_.data(); }

private:
    std::uint8_t* pages_;
    std::size_t size_;
    std::span<T> elements_;
};

/// Range of the random values in a block: [-limit, limit]. If `wild` is true, some values are NaN, infinite or huge.
struct Fill {
    float limit;
    bool wild = false;
};

template <class T, class Expected>
bool areEqual(std::span<T> actual, const Expected& expected) {
    return std::equal(actual.begin(), actual.end(), std::begin(expected), std::end(expected));
}

inline void fillRandomly(std::span<float> values, Fill fill, std::mt19937& random) {
    constexpr float wildValues[] = {nan, infinity, -infinity, 3e38f, -3e38f, 1e10f, -1e10f, -0.0f};
    for (float& value : values) {
        value = (static_cast<float>(random() % 65536) / 32768.0f - 1.0f) * fill.limit;
        if (fill.wild && random() % 4 == 0) {
            value = wildValues[random() % std::size(wildValues)];
        }
    }
}

/// A grid of random values in a GuardedBlock.
struct GuardedGrid {
    GuardedGrid(int width, int height, int floats, Against side, Fill fill, std::mt19937& random)
        : block(static_cast<std::size_t>(width * height * floats), side),
          grid{block.data(), width, height} {
        fillRandomly(block.elements(), fill, random);
    }
    GuardedBlock<float> block;
    FloatGrid grid;
};

inline std::vector<float> contents(const FloatGrid& grid, int floats) {
    return {grid.data, grid.data + grid.width * grid.height * floats};
}

/// Returns the result of `evaluate` for each cell of a grid of `width` x `height` cells.
template <class Pass>
std::vector<float> evaluateCells(const Pass& pass, int width, int height) {
    std::vector<float> cells;
    for (int j = 0; j < height; ++j) {
        for (int i = 0; i < width; ++i) {
            float cell[2];
            pass.evaluate({static_cast<float>(i) + 0.5f, static_cast<float>(j) + 0.5f}, cell);
            cells.insert(cells.end(), cell, cell + (std::is_base_of_v<VectorPass, Pass> ? 2 : 1));
        }
    }
    return cells;
}

/// Works like std::bit_cast, which some C++ standard libraries still lack.
template <class To, class From>
To bitCast(const From& from) {
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

/// True on 32-bit ARM, where vector operations flush subnormals to 0 but scalar operations do not.
#if defined(__ARM_NEON) && !defined(__aarch64__)
constexpr bool lanesFlushSubnormals = true;
#else
constexpr bool lanesFlushSubnormals = false;
#endif

/// Returns true if the bits of the two numbers are equal. Two NaNs also count as equal, because their bits depend on
/// the order of the operands. If lanesFlushSubnormals is true, two numbers that are 0 or subnormal also count as equal.
inline bool isSame(float a, float b) {
    constexpr float smallest = std::numeric_limits<float>::min();
    return bitsOf(a) == bitsOf(b) || (std::isnan(a) && std::isnan(b)) ||
           (lanesFlushSubnormals && std::abs(a) < smallest && std::abs(b) < smallest);
}

inline testing::AssertionResult areSame(std::span<const float> actual,
                                        std::span<const float> expected) {
    const auto [a, b] =
        std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end(), isSame);
    if (a == actual.end() && b == expected.end()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "the first difference is element " << a - actual.begin() << " of " << actual.size()
           << ", expected " << expected.size();
}

}  // namespace velmora::test
