#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "solver/velocity_packing.h"
#include "test_memory.h"
#include "tests/oracle/plain_kernels.h"

namespace velmora::test {
namespace {

/// Packs `values` into `bytes`. Each cell has two values.
void pack(std::span<const float> values, std::uint8_t* bytes) {
    packCells(bytes, values.data(), std::ssize(values) / 2);
}

int pairAt(const std::uint8_t* bytes, std::size_t i) {
    return bytes[2 * i] * 256 + bytes[2 * i + 1];
}

TEST(Packing, EveryValueDecodesToAtMostOneStepBelowItself) {
    std::vector<float> values;
    for (int i = -128 * 4096; i <= 128 * 4096; ++i) {
        values.push_back(static_cast<float>(i) / 4096.0f);
    }
    for (int i = -127 * 255; i <= 127 * 255; ++i) {
        const float step = static_cast<float>(i) / 255.0f;
        values.insert(values.end(),
                      {std::nextafter(step, -200.0f), step, std::nextafter(step, 200.0f)});
    }
    std::vector<std::uint8_t> bytes(values.size() * 2), plain(bytes.size());
    pack(values, bytes.data());
    reference::packComponents(plain.data(), values.data(), std::ssize(values));
    EXPECT_TRUE(bytes == plain);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float shifted = std::clamp(values[i], -127.0f, 127.0f) + 127.0f;
        const double error = static_cast<double>(shifted) - bytes[2 * i] - bytes[2 * i + 1] / 255.0;
        // If packing rounds a product up, the low byte can be one step too high. The error is then slightly negative.
        ASSERT_GE(error, -1e-6) << values[i];
        ASSERT_LT(error, 1.0 / 255.0 + 1e-6) << values[i];
    }
}

TEST(Packing, EveryLengthIsClampedAndStaysInsideItsBlocks) {
    const std::pair<float, int> cases[] = {{127.5f, 0xFE00},   {1e10f, 0xFE00}, {3e38f, 0xFE00},
                                           {infinity, 0xFE00}, {1.5f, 0x807F},  {-127.5f, 0},
                                           {-1e10f, 0},        {-3e38f, 0},     {-infinity, 0},
                                           {-0.0f, 0x7F00},    {nan, 0}};
    for (const Against side : bothSides) {
        for (std::size_t count = 0; count <= 22; count += 2) {
            const GuardedBlock<float> values(count, side);
            const GuardedBlock<std::uint8_t> bytes(2 * count, side), plain(2 * count, side);
            for (std::size_t i = 0; i < count; ++i) {
                values.data()[i] = cases[i % std::size(cases)].first;
            }
            pack(values.elements(), bytes.data());
            reference::packComponents(plain.data(), values.data(), std::ssize(values.elements()));
            EXPECT_TRUE(std::equal(bytes.data(), bytes.data() + 2 * count, plain.data()));
            for (std::size_t i = 0; i < count; ++i) {
                EXPECT_EQ(pairAt(bytes.data(), i), cases[i % std::size(cases)].second) << i;
            }
        }
    }
}

TEST(Packing, BlocksStartWithZeroVelocityAndAreAllocatedIfMissing) {
    EffectState state;
    reallocatePackedVelocity(state.packedVelocity, 3, 5);
    for (std::size_t i = 0; i < 3 * 5 * 2; ++i) {
        ASSERT_EQ(pairAt(state.packedVelocity, i), 0x7F00);
    }
    for (const auto& [width, height] : {std::pair{-1, 5}, {3, -1}, {maxGridSide + 1, 1}}) {
        reallocatePackedVelocity(state.packedVelocity, width, height);
        EXPECT_EQ(state.packedVelocity, nullptr);
    }
    float cells[] = {1.0f, -1.0f, 0.5f, 127.0f};
    packVelocity(state, {nullptr, 2, 1}, {1, 1, 2, 1});
    EXPECT_EQ(state.packedVelocity, nullptr);
    packVelocity(state, {cells, 2, 1}, {1, 1, 2, 1});
    ASSERT_NE(state.packedVelocity, nullptr);
    EXPECT_EQ(pairAt(state.packedVelocity, 1), 0x7E00);
    EXPECT_EQ(pairAt(state.packedVelocity, 3), 0xFE00);
    cells[0] = 0.0f;
    packVelocity(state, {cells, 2, 0}, {1, 1, 2, 0});
    EXPECT_EQ(pairAt(state.packedVelocity, 0), 0x8000);
}

}  // namespace
}  // namespace velmora::test
