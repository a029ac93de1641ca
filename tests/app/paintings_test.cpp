// Tests of the backgrounds that the project paints.

#include "paintings/paintings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

using hostkit::Image;

/// Returns a colour channel of a pixel, 0 to 255. Channels 0 to 2 are red, green and blue.
int channelAt(const Image& image, int x, int y, int channel) {
    return image.rgba[static_cast<std::size_t>(4 * (y * image.width + x) + channel)];
}

double lumaAt(const Image& image, int x, int y) {
    return (0.3 * channelAt(image, x, y, 0) + 0.59 * channelAt(image, x, y, 1) +
            0.11 * channelAt(image, x, y, 2)) /
           255.0;
}

/// Returns the mean difference between the channels of an image and the values of `otherAt`, in steps of 1/255.
template <class Other>
double meanDifference(const Image& image, Other otherAt) {
    double sum = 0.0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                sum += std::abs(channelAt(image, x, y, channel) - otherAt(x, y, channel));
            }
        }
    }
    return sum / (3.0 * image.width * image.height);
}

class PaintingsTest : public testing::TestWithParam<paintings::Painting> {};
INSTANTIATE_TEST_SUITE_P(All, PaintingsTest, testing::ValuesIn(paintings::allPaintings),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(PaintingsTest, KeepsThePaintingOnAScreenOfAnotherSize) {
    const auto& [name, paint] = GetParam();
    const Image plate = paint(128, 128);
    ASSERT_EQ(plate.rgba.size(), 4u * 128 * 128);
    EXPECT_EQ(plate.rgba, paint(128, 128).rgba);

    constexpr double dither = 0.6;
    const Image wide = paint(128, 64);
    EXPECT_LT(
        meanDifference(wide, [&](int x, int y, int c) { return channelAt(plate, x, y + 32, c); }),
        dither)
        << "a wide screen must show the middle rows of the painting";
    const Image tall = paint(64, 128);
    EXPECT_LT(
        meanDifference(tall, [&](int x, int y, int c) { return channelAt(plate, x + 32, y, c); }),
        dither)
        << "a tall screen must show the middle columns of the painting";

    const Image coarse = paint(256, 256);
    const Image fine = paint(512, 512);
    const auto meanOfFine = [&](int x, int y, int channel) {
        return (channelAt(fine, 2 * x, 2 * y, channel) +
                channelAt(fine, 2 * x + 1, 2 * y, channel) +
                channelAt(fine, 2 * x, 2 * y + 1, channel) +
                channelAt(fine, 2 * x + 1, 2 * y + 1, channel)) /
               4.0;
    };
    EXPECT_LT(meanDifference(coarse, meanOfFine), 4.0)
        << "an image with more pixels must show the same shapes";
}

TEST_P(PaintingsTest, IsLightWithSoftGradients) {
    const Image image = GetParam().paint(270, 480);
    double sum = 0.0;
    double darkest = 1.0;
    int changes = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            ASSERT_EQ(channelAt(image, x, y, 3), 255);
            sum += lumaAt(image, x, y);
            darkest = std::min(darkest, lumaAt(image, x, y));
            changes += x > 0 && channelAt(image, x, y, 0) != channelAt(image, x - 1, y, 0);
        }
    }
    const int pixels = image.width * image.height;
    EXPECT_GT(sum / pixels, 0.7) << "the painting must be bright enough for ink to show";
    EXPECT_LT(sum / pixels, 0.96) << "the painting must be dark enough for highlights to show";
    EXPECT_GT(darkest, 0.35);
    EXPECT_GT(changes, pixels / 5) << "dithering must hide the steps of soft gradients";
}

TEST(PaintingNamesTest, FindThePaintings) {
    for (const paintings::Painting& painting : paintings::allPaintings) {
        EXPECT_EQ(paintings::findPainting(painting.name), &painting);
    }
    EXPECT_EQ(paintings::findPainting("sand.jpg"), nullptr);
}

}  // namespace
