#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "simd/float4.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

using Lanes4 = std::array<float, 4>;
using Ints4 = std::array<std::int32_t, 4>;

// Functions of one implementation of the vector type with four lanes. The functions have the same names in every
// implementation, so each implementation has a struct of its own.
struct BuildLanes {
    using Float = lanes::Float4;
    using Shorts = lanes::Short8;
    static constexpr auto& load = lanes::load;
    static constexpr auto& loadAligned = lanes::loadAligned;
    static constexpr auto& gatherNeighbours = lanes::gatherNeighbours;
    static constexpr auto& loadPair = lanes::loadPair;
    static constexpr auto& loadShorts = lanes::loadShorts;
    static constexpr auto& ramp = lanes::ramp;
};
struct PlainLanes {
    using Float = plain::Float4;
    using Shorts = plain::Short8;
    static constexpr auto& load = plain::load;
    static constexpr auto& loadAligned = plain::loadAligned;
    static constexpr auto& gatherNeighbours = plain::gatherNeighbours;
    static constexpr auto& loadPair = plain::loadPair;
    static constexpr auto& loadShorts = plain::loadShorts;
    static constexpr auto& ramp = plain::ramp;
};
template <class L>
struct Lanes : testing::Test {};
using LaneSets = testing::Types<BuildLanes, PlainLanes>;
TYPED_TEST_SUITE(Lanes, LaneSets, );

// Values for which rounding differs from truncation, both limits of int and their neighbours, and signed zeros.
constexpr float awkwardValues[][4] = {{0.0f, -0.0f, 1.0f, -1.0f},
                                      {0.5f, -0.5f, 1.5f, -2.5f},
                                      {2.9999998f, 0.1f, 8388607.5f, 16777216.0f},
                                      {16777218.0f, 2147483520.0f, 2147483648.0f, -2147483648.0f},
                                      {-2147483904.0f, 4294967296.0f, 1e19f, 1.1754944e-38f},
                                      {-3.4028235e38f, 3.4028235e38f, -1.1754944e-38f, infinity},
                                      {-infinity, nan, -nan, 7.0f}};
constexpr std::size_t valueCount = std::size(awkwardValues) * 4;

/// Returns four consecutive test values, starting with the value number `first`. The values are cyclic: the first value
/// follows the last one.
Lanes4 valuesFrom(std::size_t first) {
    Lanes4 result;
    for (std::size_t k = 0; k < 4; ++k) {
        const std::size_t at = (first + k) % valueCount;
        result[k] = awkwardValues[at / 4][at % 4];
    }
    return result;
}

template <class Float>
testing::AssertionResult holds(Float value, const Lanes4& expected) {
    Lanes4 actual;
    store(actual.data(), value);
    return areSame(actual, expected);
}

template <class Float>
bool hold(Pair<Float> value, const Lanes4& x, const Lanes4& y) {
    return holds(value.x, x) && holds(value.y, y);
}

template <class Operation>
auto each(const Lanes4& a, const Lanes4& b, Operation operation) {
    return std::array{operation(a[0], b[0]), operation(a[1], b[1]), operation(a[2], b[2]),
                      operation(a[3], b[3])};
}

std::int32_t truncated(float value) {
    return value >= -2147483648.0f && value < 2147483648.0f ? static_cast<std::int32_t>(value)
                                                            : least;
}

TYPED_TEST(Lanes, OperationsMeanForEveryLaneWhatTheyMeanForOne) {
    using Float = typename TypeParam::Float;
    const Float one(1.0f);
    const Float zero(0.0f);
    for (std::size_t at = 0; at < valueCount * valueCount; ++at) {
        SCOPED_TRACE(testing::Message() << "pair " << at);
        const Lanes4 a = valuesFrom(at / valueCount);
        const Lanes4 b = valuesFrom(at % valueCount);
        const Float x = TypeParam::load(a.data());
        const Float y = TypeParam::load(b.data());
        const auto expect = [&](Float actual, auto meaning) {
            EXPECT_TRUE(holds(actual, each(a, b, meaning)));
        };
        expect(x + y, [](float p, float q) { return p + q; });
        expect(x - y, [](float p, float q) { return p - q; });
        expect(x * y, [](float p, float q) { return p * q; });
        expect(min(x, y), [](float p, float q) { return p < q ? p : q; });
        expect(max(x, y), [](float p, float q) { return p > q ? p : q; });
        expect(sqrt(x), [](float p, float) { return std::sqrt(p); });
        expect(select(x < y, one, zero), [](float p, float q) { return p < q ? 1.0f : 0.0f; });
        expect(select(x > y, x, y), [](float p, float q) { return p > q ? p : q; });
        expect(select((x < y) | (y > one), one, zero),
               [](float p, float q) { return p < q || q > 1.0f ? 1.0f : 0.0f; });
        expect(select((x < y) & (y > one), one, zero),
               [](float p, float q) { return p < q && q > 1.0f ? 1.0f : 0.0f; });
        const auto whole = truncate(x);
        EXPECT_EQ(bitCast<Ints4>(whole), each(a, b, [](float p, float) { return truncated(p); }));
        EXPECT_EQ(bitCast<Ints4>(minusOneWhere(x < y, whole)),
                  each(a, b, [](float p, float q) { return p < q ? -1 : truncated(p); }));
        expect(toFloat(whole), [](float p, float) { return static_cast<float>(truncated(p)); });
        EXPECT_TRUE(holds(slideRight(x, y), {a[3], b[0], b[1], b[2]}));
        EXPECT_TRUE(holds(slideLeft(x, y), {a[1], a[2], a[3], b[0]}));
    }
    for (const float least : {0.0f, 0.99999994f, 1.5f, 254.99998f, 4194300.5f}) {
        const Lanes4 small{least, least + 1.0f, least + 2.5f, 4194304.0f};
        const auto whole = truncateSmall(TypeParam::load(small.data()));
        EXPECT_EQ(bitCast<Ints4>(whole),
                  each(small, small, [](float p, float) { return truncated(p); }));
    }
    const auto ints = bitCast<decltype(truncate(one))>(Ints4{16777217, -16777219, most, 0});
    EXPECT_TRUE(holds(toFloat(ints), {16777216.0f, -16777220.0f, 2147483648.0f, 0.0f}));
    EXPECT_TRUE(
        holds(TypeParam::ramp(16777210.0f), {16777210.0f, 16777211.0f, 16777212.0f, 16777213.0f}));
    Float rows[4] = {{1.0f, 2.0f, 3.0f, 4.0f},
                     {5.0f, 6.0f, 7.0f, 8.0f},
                     {9.0f, 10.0f, 11.0f, 12.0f},
                     {13.0f, 14.0f, 15.0f, 16.0f}};
    transpose(rows[0], rows[1], rows[2], rows[3]);
    for (std::size_t k = 0; k < 4; ++k) {
        const auto first = static_cast<float>(k + 1);
        EXPECT_TRUE(holds(rows[k], {first, first + 4.0f, first + 8.0f, first + 12.0f}));
    }
    for (int mask = 0; mask < 16; ++mask) {
        const auto bit = [=](int k) { return static_cast<float>(mask >> k & 1); };
        EXPECT_EQ(any(Float(bit(0), bit(1), bit(2), bit(3)) > zero), mask != 0);
    }
}

TYPED_TEST(Lanes, LoadStoreAndGatherExactlyTheirElements) {
    using Float = typename TypeParam::Float;
    using Int = decltype(truncate(Float(0.0f)));
    const auto cells = [](std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
        return bitCast<Int>(Ints4{a, b, c, d});
    };
    const auto fill = [](const auto& block, const auto& values) {
        std::copy(values.begin(), values.end(), block.data());
    };
    for (const Against side : bothSides) {
        const GuardedBlock<float> from(8, side), pairs(8, side), four(4, side);
        fill(from, std::array{1.0f, -0.0f, 3.0f, nan, 5.0f, 6.0f, infinity, 8.0f});
        store(four.data(), TypeParam::load(from.data() + 4));
        EXPECT_TRUE(areSame(four.elements(), from.elements().last(4)));
        alignas(16) float room[7] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, nan, -0.0f};
        for (float* const at : {room, room + 1, room + 3}) {
            const std::ptrdiff_t first = at == room ? 0 : 4;
            ASSERT_EQ(alignedUp(at), room + first);
        }
        store(four.data(), TypeParam::loadAligned(room));
        EXPECT_TRUE(areSame(four.elements(), std::array{1.0f, 2.0f, 3.0f, 4.0f}));
        const Pair<Float> pair = TypeParam::loadPair(from.data());
        EXPECT_TRUE(hold(pair, {1.0f, 3.0f, 5.0f, infinity}, {-0.0f, nan, 6.0f, 8.0f}));
        storePair(pairs.data(), pair);
        EXPECT_TRUE(areSame(pairs.elements(), from.elements()));
        storeDifference(
            pairs.data(), from.data(),
            Pair<Float>{Float(1.0f, 2.0f, 3.0f, 4.0f), Float(0.0f, 0.5f, -1.0f, 16.0f)});
        EXPECT_TRUE(areSame(pairs.elements(),
                            std::array{0.0f, -0.0f, 1.0f, nan, 2.0f, 7.0f, infinity, -8.0f}));

        EXPECT_TRUE(hold(gatherPairs(from.data(), cells(3, 0, 2, 3)),
                         {infinity, 1.0f, 5.0f, infinity}, {8.0f, -0.0f, 6.0f, 8.0f}));
        const GuardedBlock<std::int32_t> indices(4, side);
        store(indices.data(), cells(2, 0, 1, 2));
        EXPECT_TRUE(areEqual(indices.elements(), std::array{2, 0, 1, 2}));
        const auto [cell, next] = TypeParam::gatherNeighbours(from.data(), indices.data());
        EXPECT_TRUE(hold(cell, {5.0f, 1.0f, 3.0f, 5.0f}, {6.0f, -0.0f, nan, 6.0f}));
        EXPECT_TRUE(hold(next, {infinity, 3.0f, 5.0f, infinity}, {8.0f, nan, 6.0f, 8.0f}));

        const GuardedBlock<std::uint16_t> shorts(8, side);
        fill(shorts, std::array{0, 1, 2, 255, 256, 32767, 32768, 65535});
        store(shorts.data(),
              TypeParam::loadShorts(shorts.data()) + typename TypeParam::Shorts(32769));
        EXPECT_TRUE(areEqual(shorts.elements(),
                             std::array{32769, 32770, 32771, 33024, 33025, 0, 1, 32768}));

        const GuardedBlock<std::uint8_t> bytes(16, side);
        for (std::int32_t high = 0; high < 256; ++high) {
            const std::int32_t low = high * 73 % 256;
            storeBytePairs(bytes.data(),
                           BytePairs<Int>{cells(high, low, 255, 0), cells(low, high, 0, 255)},
                           BytePairs<Int>{cells(1, high, 255, low), cells(high, 2, low, 255)});
            const std::array expected{high, low,  low,  high, 255, 0,   0,   255,
                                      1,    high, high, 2,    255, low, low, 255};
            ASSERT_TRUE(areEqual(bytes.elements(), expected)) << high;
        }
    }
}

}  // namespace
}  // namespace velmora::test
