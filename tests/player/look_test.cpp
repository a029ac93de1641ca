// Looks that the program chooses: an ink for a picture, and a look by chance.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "player/ink_choice.h"
#include "player/random_look.h"

namespace {

using Color = std::array<float, 3>;

/// Three quarters of one colour and a quarter of the other.
hostkit::Picture striped(const Color& most, const Color& rest) {
    hostkit::Picture picture{40, 40, {}};
    for (int at = 0; at < 40 * 40; ++at) {
        for (const float channel : at % 40 < 30 ? most : rest) {
            picture.rgba.push_back(static_cast<std::uint8_t>(std::lround(255.0f * channel)));
        }
        picture.rgba.push_back(255);
    }
    return picture;
}

/// 1 where both lean the same way from grey, -1 where they are complements.
double likeness(const Color& one, const Color& other) {
    double product = 0.0, first = 0.0, second = 0.0;
    for (std::size_t part = 0; part < 3; ++part) {
        const double a = static_cast<double>(one[part] - (one[0] + one[1] + one[2]) / 3.0f);
        const double b = static_cast<double>(other[part] - (other[0] + other[1] + other[2]) / 3.0f);
        product += a * b, first += a * a, second += b * b;
    }
    return product / std::sqrt(first * second);
}

void expectLight(const Color& ink) {
    EXPECT_GE(std::ranges::min(ink), 0.25f);
    EXPECT_FLOAT_EQ(std::ranges::max(ink), 1.0f);
}

TEST(Look, TheInkOfAPictureIsALightComplementOfWhatMostOfItShows) {
    for (int hue = 0; hue < 360; hue += 10) {
        SCOPED_TRACE(hue);
        const Color most = player::lightInk(hue, 0.2);
        const hostkit::Picture picture = striped(most, player::lightInk(hue + 140, 0.1));
        EXPECT_LT(likeness(player::inkAgainst(picture), most), -0.95);
        for (int variation = 0; variation < 9; ++variation) {
            const Color ink = player::inkAgainst(picture, variation);
            expectLight(ink);
            EXPECT_LT(likeness(ink, most), -0.5) << variation;
            EXPECT_EQ(ink == player::inkAgainst(picture), variation == 0);
        }
    }
    expectLight(player::inkAgainst(striped({0.5f, 0.5f, 0.5f}, {0, 0, 0})));
    expectLight(player::inkAgainst({}));
}

TEST(Look, ALookByChanceKeepsToTheLimitsAndIsTheSameEachTime) {
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        const player::Settings look = player::randomLook(seed);
        const auto expectWithin = [&](const auto& fields) {
            for (const auto& field : fields) {
                ASSERT_GE(look.*field.member, field.least) << field.name;
                ASSERT_LE(look.*field.member, field.most) << field.name;
            }
        };
        expectWithin(player::numberFields);
        expectWithin(player::countFields);
        expectLight(look.ink);
        ASSERT_EQ(look, player::randomLook(seed));
        ASSERT_FALSE(look == player::randomLook(seed + 1));
    }
}

}  // namespace
