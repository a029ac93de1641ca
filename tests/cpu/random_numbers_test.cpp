#include <gtest/gtest.h>

#include <cstdlib>

namespace {

int numberAt(int place) {
    for (int skipped = 1; skipped < place; ++skipped) {
        std::rand();
    }
    return std::rand();
}

// Expects the numbers that rand() of the GNU C library returns.
TEST(RandomNumbers, AreTheSameWithEveryCLibrary) {
    constexpr struct {
        unsigned seed;
        int first, thousandth;
    } sequences[] = {{0, 1804289383, 1143565421},
                     {1, 1804289383, 1143565421},
                     {7, 1045618677, 1850767143},
                     {3000000000u, 2058147116, 973692164}};
    for (const auto& [seed, first, thousandth] : sequences) {
        std::srand(seed);
        EXPECT_EQ(numberAt(1), first) << seed;
        EXPECT_EQ(numberAt(999), thousandth) << seed;
    }
}

}  // namespace
