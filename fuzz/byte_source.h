#pragma once

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>

namespace fuzz {

/// Turns input bytes into random decisions. When all bytes are used, each further byte counts as 0.
class ByteSource {
public:
    explicit ByteSource(std::span<const std::uint8_t> bytes) : left(bytes) {}

    bool isUsedUp() const { return left.empty(); }

    std::uint8_t byte() {
        if (left.empty()) {
            return 0;
        }
        const std::uint8_t first = left.front();
        left = left.subspan(1);
        return first;
    }
    std::uint32_t word() {
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) {
            bits = bits << 8 | byte();
        }
        return bits;
    }
    bool oneIn(int n) { return byte() % n == 0; }
    bool flag() { return (byte() & 1) != 0; }

    /// Returns a random number in [min, max].
    int between(int min, int max) {
        const int drawn = byte() << 8 | byte();
        return max < min ? min : min + drawn % (max - min + 1);
    }
    int size() { return oneIn(3) ? between(-5, 30) : between(-5, 5000); }

    int anyInt() {
        constexpr int edges[] = {0, -1, 1, std::numeric_limits<int>::min(),
                                 std::numeric_limits<int>::max()};
        switch (byte() % 4) {
            case 0:
                return edges[byte() % std::size(edges)];
            case 1:
                return std::bit_cast<int>(word());
            default:
                return between(-20, 2000);
        }
    }

    float anyFloat() {
        constexpr float edges[] = {0.0f,    -0.0f,    1.0f,         -1.0f,     0.94f,      1e20f,
                                   FLT_MAX, -FLT_MAX, FLT_TRUE_MIN, HUGE_VALF, -HUGE_VALF, NAN};
        switch (byte() % 8) {
            case 0:
                return edges[byte() % std::size(edges)];
            case 1:
                return std::bit_cast<float>(word());
            case 2:
                return static_cast<float>(between(-3000, 3000));
            default:
                return static_cast<float>(byte()) / 128.0f;
        }
    }

private:
    std::span<const std::uint8_t> left;
};

}  // namespace fuzz
