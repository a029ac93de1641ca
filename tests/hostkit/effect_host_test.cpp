#include "hostkit/effect_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include "hostkit/instruments/checked_jni.h"

namespace hostkit {
namespace {

using Pixels = std::vector<std::uint8_t>;

int channel(const Pixels& pixels, int width, int x, int y, int part) {
    return pixels[static_cast<std::size_t>((y * width + x) * 4 + part)];
}

EffectHostOptions smallHost(int width, int height, bool ink) {
    // The background is a smooth gradient, so that a small shift changes each pixel only a little.
    const Image ramps{2, 2, {0, 0, 0, 255, 255, 0, 0, 255, 0, 255, 0, 255, 255, 255, 0, 255}};
    return {.width = width, .height = height, .inkEnabled = ink, .background = ramps};
}

TEST(EffectHost, FlatWaterShowsTheWholeBackgroundUpright) {
    for (const auto& [width, height] : {std::pair{120, 200}, std::pair{200, 120}}) {
        EffectHost host(smallHost(width, height, false));
        host.frame();
        const Pixels pixels = host.pixels();
        // Red increases to the right and green increases downwards. Both rise from 0 to 255 in the middle half of the
        // image.
        for (int step = 0; step <= 10; ++step) {
            const double along = step / 10.0;
            const double expected = 255.0 * std::clamp(2.0 * along - 0.5, 0.0, 1.0);
            const int x = static_cast<int>(along * (width - 1));
            const int y = static_cast<int>(along * (height - 1));
            EXPECT_NEAR(channel(pixels, width, x, height / 3, 0), expected, 10) << width;
            EXPECT_NEAR(channel(pixels, width, width / 3, y, 1), expected, 10) << width;
        }
    }
}

TEST(EffectHost, ATouchMakesRipplesAndInkAtTheFinger) {
    EffectHost host(smallHost(240, 400, true));
    host.frame();
    const Pixels before = host.pixels();
    const ScriptEvent events[] = {{0, InkColor{1.0f, 0.0f, 0.0f}},
                                  {0, Touch{TouchAction::down, 150, 280, 0.5f}}};
    host.frame(events);
    EXPECT_TRUE(host.inkShown());
    for (int frame = 0; frame < 5; ++frame) {
        host.frame();
    }
    const Pixels after = host.pixels();
    EXPECT_LT(channel(after, 240, 150, 280, 1), channel(before, 240, 150, 280, 1) / 2);
    for (int part = 0; part < 3; ++part) {
        EXPECT_EQ(channel(after, 240, 40, 60, part), channel(before, 240, 40, 60, part));
    }
    EXPECT_FALSE(host.water().idle);

    host.clearInk();
    EXPECT_FALSE(host.inkShown());
}

TEST(EffectHost, DrawsTheSamePixelsAfterTheContextIsReplaced) {
    EffectHostOptions options = smallHost(120, 200, true);
    CheckedJni jni({ArrayAccess::copy, 32});
    options.jni = &jni;
    EffectHost host(options);
    const ScriptEvent second[] = {{0, SecondBackground{true}}};
    host.frame();
    const Pixels first = host.pixels();
    host.frame(second);
    const Pixels other = host.pixels();
    EXPECT_NE(other, first);

    const ScriptEvent events[] = {{0, LoseContext{}}, {0, SecondBackground{false}}};
    host.frame(events);
    EXPECT_EQ(host.pixels(), first);
    host.setBackgrounds(makeTestImage(120, 200), {});
    host.frame();
    EXPECT_NE(host.pixels(), first);
    EXPECT_EQ(jni.pinned(), 0);
    EXPECT_TRUE(jni.checkGuards().empty());
}

}  // namespace
}  // namespace hostkit
