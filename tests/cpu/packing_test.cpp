#include <array>

#include "solver/velocity_packing.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

using BytePair = std::array<std::uint8_t, 2>;

/// Packs cells of two values each into a block that the caller keeps.
void pack(std::span<float> values, std::uint8_t* bytes) {
    EffectState state;
    state.packedVelocity = bytes;
    const auto cells = static_cast<std::int32_t>(values.size() / 2);
    packVelocity(state, {values.data(), cells, 1}, {1, 1, cells, 1});
    state.packedVelocity = nullptr;
}

BytePair packed(float value) {
    float cell[2] = {value, 0.0f};
    std::uint8_t bytes[4];
    pack(cell, bytes);
    return {bytes[0], bytes[1]};
}

/// The bytes step by step, each product and difference rounded to a float.
BytePair recipe(float v) {
    const float k = std::bit_cast<float>(0x3B808083u);
    const float lowered = v > -127.0f ? v : -127.0f;
    const float a = lowered < 127.0f ? lowered : 127.0f;
    const float t = a + 127.0f;
    const float q = t * k;
    const float ft = t - std::trunc(t);
    const float fq = q - std::trunc(q);
    const float low = ft * 255.0f;
    const float carried = ft * k;
    const float high = (fq - carried) * 255.0f;
    return {static_cast<std::uint8_t>(high), static_cast<std::uint8_t>(low)};
}

TEST(Packing, KnownValues) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    struct Case {
        float value;
        BytePair bytes;
    };
    for (const Case tried : {Case{0.0f, {127, 0}},
                             {-0.0f, {127, 0}},
                             {-127.0f, {0, 0}},
                             {-127.5f, {0, 0}},
                             {127.0f, {254, 0}},
                             {127.5f, {254, 0}},
                             {0.5f, {127, 127}},
                             {1.0f, {128, 0}},
                             {-1.0f, {126, 0}},
                             {infinity, {254, 0}},
                             {-infinity, {0, 0}},
                             {3e38f, {254, 0}},
                             {std::numeric_limits<float>::quiet_NaN(), {0, 0}}}) {
        EXPECT_EQ(packed(tried.value), tried.bytes) << tried.value;
    }
}

TEST(Packing, EveryStepFollowsTheRecipeAndDecodesJustBelow) {
    std::vector<float> values;
    for (int i = -128 * 4096; i <= 128 * 4096; ++i) {
        values.push_back(static_cast<float>(i) / 4096.0f);
    }
    for (int i = -127 * 255; i <= 127 * 255; ++i) {
        const float step = static_cast<float>(i) / 255.0f;
        values.insert(values.end(),
                      {std::nextafter(step, -200.0f), step, std::nextafter(step, 200.0f)});
    }
    values.resize((values.size() + 1) / 2 * 2);
    std::vector<std::uint8_t> bytes(values.size() * 2);
    pack(values, bytes.data());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const BytePair actual{bytes[2 * i], bytes[2 * i + 1]};
        ASSERT_EQ(actual, recipe(values[i])) << values[i];
        const float shifted = std::clamp(values[i], -127.0f, 127.0f) + 127.0f;
        const double error = shifted - (actual[0] + actual[1] / 255.0);
        // The products round to floats, near whole steps of the low byte either way.
        ASSERT_GE(error, -1e-6) << values[i];
        ASSERT_LT(error, 1.0 / 255.0 + 1e-6) << values[i];
    }
}

TEST(Packing, TailsAndGuardsOfEveryLength) {
    std::mt19937 random(3);
    for (const Against side : bothSides) {
        for (std::size_t cells = 0; cells <= 11; ++cells) {
            const GuardedBlock<float> values(2 * cells, side);
            const GuardedBlock<std::uint8_t> bytes(4 * cells, side);
            fillRandomly(values.elements(), {200.0f, true}, random);
            pack(values.elements(), bytes.data());
            for (std::size_t i = 0; i < 2 * cells; ++i) {
                const BytePair actual{bytes.elements()[2 * i], bytes.elements()[2 * i + 1]};
                EXPECT_EQ(actual, recipe(values.elements()[i])) << i << " of " << cells;
            }
            EXPECT_TRUE(values.isIntact() && bytes.isIntact());
        }
    }
}

TEST(Packing, BlocksHoldStillFlowAndAreMadeWhenAbsent) {
    EffectState state;
    reallocatePackedVelocity(state.packedVelocity, 3, 5);
    for (int i = 0; i < 3 * 5 * 4; ++i) {
        ASSERT_EQ(state.packedVelocity[i], i % 2 == 0 ? 127 : 0);
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
    constexpr std::uint8_t expected[] = {128, 0, 126, 0, 127, 127, 254, 0};
    EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), state.packedVelocity));
    cells[0] = 0.0f;
    packVelocity(state, {cells, 2, 0}, {1, 1, 2, 0});
    EXPECT_EQ(state.packedVelocity[0], 128);
}

}  // namespace
}  // namespace velmora::test
