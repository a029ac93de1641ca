#include <array>
#include <cstring>

#include "simd/float4.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

using Lanes4 = std::array<float, 4>;
using Ints4 = std::array<std::int32_t, 4>;

// The loads have the names of the one-lane templates, so each set of lanes hands over its own.
struct BuildLanes {
    using Float = lanes::Float4;
    static constexpr auto& load = lanes::load;
    static constexpr auto& loadPair = lanes::loadPair;
    static constexpr auto& ramp = lanes::ramp;
};
struct PlainLanes {
    using Float = plain::Float4;
    static constexpr auto& load = plain::load;
    static constexpr auto& loadPair = plain::loadPair;
    static constexpr auto& ramp = plain::ramp;
};

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
// Ties of rounding and truncation, both ends of the int range and their neighbours, signed zeros.
constexpr float awkwardValues[] = {
    0.0f,
    -0.0f,
    1.0f,
    -1.0f,
    0.5f,
    -0.5f,
    1.5f,
    -2.5f,
    2.9999998f,
    0.1f,
    8388607.5f,
    16777216.0f,
    16777218.0f,
    2147483520.0f,
    2147483648.0f,
    -2147483648.0f,
    -2147483904.0f,
    4294967296.0f,
    1e19f,
    -3.4028235e38f,
    3.4028235e38f,
    1.1754944e-38f,
    -1.1754944e-38f,
    infinity,
    -infinity,
    nan,
    -nan,
#if !defined(__ARM_NEON) || defined(__aarch64__)
    1e-40f,
    -1e-45f,
#endif
};
constexpr std::size_t valueCount = std::size(awkwardValues);

Lanes4 valuesFrom(std::size_t first) {
    Lanes4 result;
    for (std::size_t k = 0; k < 4; ++k) {
        result[k] = awkwardValues[(first + k) % valueCount];
    }
    return result;
}

template <class Float>
Lanes4 lanesOf(Float value) {
    Lanes4 result;
    store(result.data(), value);
    return result;
}

template <class Operation>
auto each(const Lanes4& a, const Lanes4& b, Operation operation) {
    return std::array{operation(a[0], b[0]), operation(a[1], b[1]), operation(a[2], b[2]),
                      operation(a[3], b[3])};
}

std::int32_t truncated(float value) {
    const double whole = std::trunc(static_cast<double>(value));
    return whole >= -2147483648.0 && whole <= 2147483647.0
               ? static_cast<std::int32_t>(whole)
               : std::numeric_limits<std::int32_t>::min();
}

/// Every operation on every pair of awkward values, in every lane, against its meaning for one.
template <class L>
void checkOperations() {
    using Float = typename L::Float;
    for (std::size_t at = 0; at < valueCount * valueCount; ++at) {
        SCOPED_TRACE(testing::Message() << "pair " << at);
        const Lanes4 a = valuesFrom(at / valueCount);
        const Lanes4 b = valuesFrom(at % valueCount);
        const Float x = L::load(a.data());
        const Float y = L::load(b.data());
        const Float one(1.0f);
        const Float zero(0.0f);
        const auto expect = [&](Float actual, auto meaning) {
            EXPECT_TRUE(areSame(lanesOf(actual), each(a, b, meaning)));
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
        const auto less = each(a, b, [](float p, float q) { return p < q; });
        EXPECT_EQ(any(x < y), less[0] || less[1] || less[2] || less[3]);
        const auto whole = truncate(x);
        EXPECT_EQ(std::bit_cast<Ints4>(whole),
                  each(a, b, [](float p, float) { return truncated(p); }));
        expect(toFloat(whole), [](float p, float) { return static_cast<float>(truncated(p)); });
    }
    const Ints4 rounded{16777217, -16777219, std::numeric_limits<std::int32_t>::max(), 0};
    const auto ints = std::bit_cast<decltype(truncate(Float(0.0f)))>(rounded);
    EXPECT_TRUE(
        areSame(lanesOf(toFloat(ints)), Lanes4{16777216.0f, -16777220.0f, 2147483648.0f, 0.0f}));
    EXPECT_TRUE(areSame(lanesOf(L::ramp(16777210.0f)),
                        Lanes4{16777210.0f, 16777211.0f, 16777212.0f, 16777213.0f}));
}

/// `any` over the 16 masks, stores beyond whose end nothing is written, gathers of any order.
template <class L>
void checkMemory() {
    using Float = typename L::Float;
    using Int = decltype(truncate(Float(0.0f)));
    const auto bit = [](int pattern, int k) { return static_cast<float>(pattern >> k & 1); };
    for (int pattern = 0; pattern < 16; ++pattern) {
        EXPECT_EQ(any(Float(bit(pattern, 0), bit(pattern, 1), bit(pattern, 2), bit(pattern, 3)) >
                      Float(0.0f)),
                  pattern != 0);
    }
    for (const Against side : bothSides) {
        const GuardedBlock<float> from(8, side);
        std::ranges::copy(std::array{1.0f, -0.0f, 3.0f, nan, 5.0f, 6.0f, infinity, 8.0f},
                          from.data());
        const Pair<Float> pair = L::loadPair(from.data());
        EXPECT_TRUE(areSame(lanesOf(pair.x), Lanes4{1.0f, 3.0f, 5.0f, infinity}));
        EXPECT_TRUE(areSame(lanesOf(pair.y), Lanes4{-0.0f, nan, 6.0f, 8.0f}));
        const GuardedBlock<float> pairs(8, side);
        storePair(pairs.data(), pair);
        EXPECT_TRUE(areSame(pairs.elements(), from.elements()));

        const auto cells = [](std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
            return std::bit_cast<Int>(Ints4{a, b, c, d});
        };
        const Pair<Float> gathered = gatherPairs(from.data(), cells(3, 0, 2, 3));
        EXPECT_TRUE(areSame(lanesOf(gathered.x), Lanes4{infinity, 1.0f, 5.0f, infinity}));
        EXPECT_TRUE(areSame(lanesOf(gathered.y), Lanes4{8.0f, -0.0f, 6.0f, 8.0f}));
        const auto neighbours = gatherNeighbours(from.data(), cells(2, 0, 1, 2));
        EXPECT_TRUE(areSame(lanesOf(neighbours.cell.x), Lanes4{5.0f, 1.0f, 3.0f, 5.0f}));
        EXPECT_TRUE(areSame(lanesOf(neighbours.cell.y), Lanes4{6.0f, -0.0f, nan, 6.0f}));
        EXPECT_TRUE(areSame(lanesOf(neighbours.next.x), Lanes4{infinity, 3.0f, 5.0f, infinity}));
        EXPECT_TRUE(areSame(lanesOf(neighbours.next.y), Lanes4{8.0f, nan, 6.0f, 8.0f}));

        const GuardedBlock<float> points(12, side);
        storePoints(points.data(), pair.x, pair.y);
        EXPECT_TRUE(areSame(points.elements(), std::array{1.0f, -0.0f, 0.0f, 3.0f, nan, 0.0f, 5.0f,
                                                          6.0f, 0.0f, infinity, 8.0f, 0.0f}));

        const GuardedBlock<std::uint8_t> bytes(16, side);
        for (std::int32_t high = 0; high < 256; ++high) {
            for (std::int32_t low = 0; low < 256; ++low) {
                storeBytePairs(bytes.data(),
                               BytePairs<Int>{cells(high, low, 255, 0), cells(low, high, 0, 255)},
                               BytePairs<Int>{cells(1, high, 255, low), cells(high, 2, low, 255)});
                const std::array expected{high, low,  low,  high, 255, 0,   0,   255,
                                          1,    high, high, 2,    255, low, low, 255};
                ASSERT_TRUE(std::ranges::equal(bytes.elements(), expected)) << high << ' ' << low;
            }
        }
        EXPECT_TRUE(from.isIntact() && pairs.isIntact() && points.isIntact() && bytes.isIntact());
    }
}

TEST(Lanes, BuildOperationsMeanTheSameForFourAsForOne) {
    checkOperations<BuildLanes>();
}
TEST(Lanes, PlainOperationsMeanTheSameForFourAsForOne) {
    checkOperations<PlainLanes>();
}
TEST(Lanes, BuildLanesLoadStoreAndGatherExactlyTheirElements) {
    checkMemory<BuildLanes>();
}
TEST(Lanes, PlainLanesLoadStoreAndGatherExactlyTheirElements) {
    checkMemory<PlainLanes>();
}

TEST(Lanes, RangesAreCoveredOnceByFoursThenByOnes) {
    for (std::ptrdiff_t begin : {0, 1, 6}) {
        for (std::ptrdiff_t width = -1; width <= 9; ++width) {
            std::ptrdiff_t next = begin;
            forLanes(begin, begin + width, [&]<class Lane>(std::ptrdiff_t i) {
                EXPECT_EQ(i, next);
                EXPECT_EQ(LaneTraits<Lane>::width, begin + width - i >= 4 ? 4 : 1);
                next = i + LaneTraits<Lane>::width;
            });
            forColumns(begin, begin + width, []<class Lane>(std::ptrdiff_t i, Lane columns) {
                float actual[4] = {};
                float expected[4] = {};
                store(actual, columns);
                store(expected, ramp<Lane>(static_cast<float>(i)));
                EXPECT_TRUE(areSame(actual, expected));
            });
            EXPECT_EQ(next, begin + std::max<std::ptrdiff_t>(width, 0));
        }
    }
}

}  // namespace
}  // namespace velmora::test
