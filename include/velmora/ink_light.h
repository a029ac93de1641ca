#pragma once

namespace velmora {

// The light that passes through ink: the formula of the water's fragment shader (src/gpu/shaders/waterInk.frag), for
// the library and for hosts that choose an ink colour. Colour channels are linear factors in [0, 1].

/// Highest density of ink.
constexpr float maxInkDensity = 127.0f;
/// Darkening by ink of density 1, in every ink frame.
constexpr float frameInkIntensity = 0.02f;
/// EffectState::inkColorOffset of every ink frame.
constexpr float frameInkColorOffset = 0.001f;

/// Returns the channel of the ink's colour for a channel that the host gives: a little lighter, so that no channel is
/// quite black.
constexpr float inkChannel(float hostChannel) {
    return static_cast<float>(static_cast<double>(hostChannel) + 0.05);
}

/// Returns how strongly ink absorbs a channel of the light, at least 0.4 for a channel of `inkChannel`: little where
/// the ink's own colour is bright.
constexpr float inkAbsorption(float inkChannel, float colorOffset = frameInkColorOffset) {
    const double light = 1.5 - static_cast<double>(colorOffset);
    return static_cast<float>(light / static_cast<double>(inkChannel) - 1.0);
}

/// Returns the factor, (0, 1], by which ink of `density` darkens a channel of the background. `hostChannel` is that
/// channel of the ink colour in the call of onDrawFrame.
constexpr double lightThroughInk(float hostChannel, double density) {
    const auto absorption = static_cast<double>(inkAbsorption(inkChannel(hostChannel)));
    return 1.0 / (1.0 + static_cast<double>(frameInkIntensity) * density * absorption);
}

}  // namespace velmora
