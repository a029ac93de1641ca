// Tests settings that the program chooses itself: an ink colour that stands out from an image, and random settings.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "app/ink_choice.h"
#include "app/random_settings.h"

namespace {

using Color = std::array<float, 3>;

/// Returns an image whose left three quarters have the `dominant` colour. The right quarter has the `other` colour.
hostkit::Image striped(const Color& dominant, const Color& other) {
    hostkit::Image image{40, 40, {}};
    for (int pixel = 0; pixel < 40 * 40; ++pixel) {
        for (const float channel : pixel % 40 < 30 ? dominant : other) {
            image.rgba.push_back(static_cast<std::uint8_t>(std::lround(255.0f * channel)));
        }
        image.rgba.push_back(255);
    }
    return image;
}

/// Returns the similarity of the hues of two colours: 1 for equal hues, -1 for complementary hues.
double similarity(const Color& one, const Color& other) {
    double product = 0.0, first = 0.0, second = 0.0;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const double a = static_cast<double>(one[channel] - (one[0] + one[1] + one[2]) / 3.0f);
        const double b =
            static_cast<double>(other[channel] - (other[0] + other[1] + other[2]) / 3.0f);
        product += a * b, first += a * a, second += b * b;
    }
    return product / std::sqrt(first * second);
}

void expectLight(const Color& ink) {
    EXPECT_GE(std::ranges::min(ink), 0.25f);
    EXPECT_FLOAT_EQ(std::ranges::max(ink), 1.0f);
}

TEST(InkChoice, IsALightComplementOfTheDominantColor) {
    for (int hue = 0; hue < 360; hue += 10) {
        SCOPED_TRACE(hue);
        const Color dominant = app::lightInk(hue, 0.2);
        const hostkit::Image image = striped(dominant, app::lightInk(hue + 140, 0.1));
        EXPECT_LT(similarity(app::inkAgainst(image), dominant), -0.95);
        for (int variation = 0; variation < 9; ++variation) {
            const Color ink = app::inkAgainst(image, variation);
            expectLight(ink);
            EXPECT_LT(similarity(ink, dominant), -0.5) << variation;
            EXPECT_EQ(ink == app::inkAgainst(image), variation == 0);
        }
    }
    expectLight(app::inkAgainst(striped({0.5f, 0.5f, 0.5f}, {0, 0, 0})));
    expectLight(app::inkAgainst({}));
}

TEST(RandomSettings, StayInRangeAndDependOnlyOnTheSeed) {
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        const app::Settings settings = app::randomSettings(seed);
        const auto expectWithin = [&](const auto& fields) {
            for (const auto& field : fields) {
                ASSERT_GE(settings.*field.member, field.min) << field.name;
                ASSERT_LE(settings.*field.member, field.max) << field.name;
            }
        };
        expectWithin(app::numberFields);
        expectWithin(app::countFields);
        expectLight(settings.ink);
        ASSERT_EQ(settings, app::randomSettings(seed));
        ASSERT_FALSE(settings == app::randomSettings(seed + 1));
    }
}

}  // namespace
