#include "app/effect_probe.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "app/density_overlay.h"
#include "app/size.h"
#include "hostkit/digest.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"

namespace {

TEST(EffectProbe, ObservesVelocitiesInkAndTimes) {
    for (const bool ink : {true, false}) {
        app::EffectProbe probe;
        hostkit::EffectHost host({.width = 240, .height = 400, .inkEnabled = ink});
        probe.watch({240, 400}, ink);
        probe.draw(host);
        const hostkit::Digest digestAtRest = probe.velocityDigest();
        hostkit::Digest ofField;
        addBytes(ofField, std::as_bytes(std::span(probe.velocity().bytes)));
        EXPECT_EQ(digestAtRest.state, ofField.state)
            << "the digest must include the first uploaded velocities exactly once";
        host.touch({hostkit::TouchAction::down, 150, 280, 0.5f});
        for (int frame = 0; frame < 5; ++frame) {
            probe.draw(host);
        }
        const app::FrameMoments& moments = probe.moments();
        EXPECT_LE(moments.begin, moments.firstDraw);
        EXPECT_EQ(moments.solverDone.has_value(), ink);
        EXPECT_EQ(probe.inkTexture() != 0, ink);
        EXPECT_EQ(probe.velocity().bytes.size(), ink ? 20u * 33 * 4 : 0u);
        EXPECT_EQ(probe.velocityDigest().state != digestAtRest.state, ink)
            << "the touch must change the velocities if ink is enabled, and only then";
        if (!ink) {
            continue;
        }
        EXPECT_LE(moments.begin, moments.solverDone);
        EXPECT_LE(moments.solverDone, moments.firstDraw);
        // The ink texture must contain ink at the position of the finger, and no ink in the opposite corner.
        const app::Size size = probe.inkTextureSize();
        const auto colors = app::DensityOverlay().colors(probe.inkTexture(), size);
        const auto texelAt = [&](int x, int y) {
            const int row = (400 - y) * size.height / 400;
            const int at = 4 * (row * size.width + x * size.width / 240);
            return std::vector(colors.begin() + at, colors.begin() + at + 4);
        };
        EXPECT_GT(texelAt(150, 280)[0], 100);
        EXPECT_EQ(texelAt(40, 60), (std::vector<std::uint8_t>{0, 0, 255, 64}));
    }
}

}  // namespace
