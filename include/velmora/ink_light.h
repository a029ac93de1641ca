#pragma once

// How ink darkens light: the formula of the water's fragment shader (src/gpu/shaders/waterInk.frag) in C++, for the
// library and for hosts that choose an ink colour. Colour channels are factors in [0, 1].

namespace velmora {

/// Highest density of ink.
constexpr float maxInkDensity = 127.0f;
/// Darkening by ink of density 1, in every ink frame.
constexpr float frameInkIntensity = 0.02f;
/// Offset that every ink frame subtracts from inkTransparency.
constexpr float frameInkColorOffset = 0.001f;
/// Offset that the library adds to each channel of the host's ink colour, so that no channel is black.
constexpr double inkLightening = 0.05;
/// Channel of an ink colour that would absorb no light.
constexpr double inkTransparency = 1.5;

/// Returns the channel of the ink for a channel of the host's ink colour.
constexpr float inkChannel(float hostChannel) {
    return static_cast<float>(static_cast<double>(hostChannel) + inkLightening);
}

/// Returns the absorption of a colour channel by ink, at least 0.4. Bright channels of the ink absorb little.
constexpr float inkAbsorption(float channel, float colorOffset = frameInkColorOffset) {
    const double transparency = inkTransparency - static_cast<double>(colorOffset);
    return static_cast<float>(transparency / static_cast<double>(channel) - 1.0);
}

/// Returns the factor, (0, 1], by which ink of `density` darkens a channel of the background. `hostChannel` is the same
/// channel of the ink colour that the host passes to onDrawFrame.
constexpr double lightThroughInk(float hostChannel, double density) {
    const auto absorption = static_cast<double>(inkAbsorption(inkChannel(hostChannel)));
    return 1.0 / (1.0 + static_cast<double>(frameInkIntensity) * density * absorption);
}

}  // namespace velmora
