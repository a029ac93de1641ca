#pragma once

#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"

namespace hostkit {

/// Image of one channel.
struct GreyImage {
    int width = 0;
    /// Brightness of the pixels, 0 to 255, row by row.
    std::vector<float> pixels;
};

/// Plays a gesture on a new host and returns the brightness of every sixth frame. Throws HostError.
std::vector<GreyImage> playedFrames(EffectHostOptions options, const GestureScript& script);

/// Returns the lowest structural similarity (SSIM) of a frame and the frame with the same index in the other list. Both
/// lists have the same length, and all frames have the same size. Equal frames have similarity 1; visible differences
/// reduce it.
double lowestSimilarity(const std::vector<GreyImage>& frames, const std::vector<GreyImage>& others);

}  // namespace hostkit
