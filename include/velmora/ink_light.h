// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// The formula by which ink absorbs light.

// The formula by which ink darkens light, in C++. The water's fragment shader (src/gpu/shaders/waterInk.frag) has the
// same formula in GLSL. A host can use this header to choose an ink colour. Colour channels are factors in [0, 1].

namespace velmora {

/// Highest density of ink.
constexpr float maxInkDensity = 127.0f;

/// Strength of the darkening per unit of ink density. Every frame with ink uses this value.
constexpr float frameInkIntensity = 0.02f;

/// Offset of the absorption formula in every frame with ink. The formula subtracts this offset from inkTransparency.
constexpr float frameInkColorOffset = 0.001f;

/// Offset that the library adds to each channel of the host's ink colour, so that no channel is 0.
constexpr double inkLightening = 0.05;

/// Channel value of an ink colour at which the ink would absorb no light.
constexpr double inkTransparency = 1.5;

/// Converts a channel of the host's ink colour to the channel that the library uses.
/// @param hostChannel channel of the colour that the host passes to onDrawFrame, 0 to 1
/// @return the channel, 0.05 to 1.05
constexpr float inkChannel(float hostChannel) {
    return static_cast<float>(static_cast<double>(hostChannel) + inkLightening);
}

/// Returns how strongly ink absorbs the light of one colour channel. Ink with a bright channel absorbs little of it.
/// @param channel channel of the ink as returned by inkChannel
/// @param colorOffset offset that the formula subtracts from inkTransparency; a larger offset lowers the absorption
/// @return the absorption, at least 0.4
constexpr float inkAbsorption(float channel, float colorOffset = frameInkColorOffset) {
    const double transparency = inkTransparency - static_cast<double>(colorOffset);
    return static_cast<float>(transparency / static_cast<double>(channel) - 1.0);
}

/// Returns the factor by which ink darkens a colour channel of the background.
/// @param hostChannel the same channel of the ink colour that the host passes to onDrawFrame, 0 to 1
/// @param density density of the ink, 0 to maxInkDensity
/// @return the factor, in (0, 1]
constexpr double lightThroughInk(float hostChannel, double density) {
    const auto absorption = static_cast<double>(inkAbsorption(inkChannel(hostChannel)));
    return 1.0 / (1.0 + static_cast<double>(frameInkIntensity) * density * absorption);
}

}  // namespace velmora
