#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "hostkit/digest.h"
#include "hostkit/effect_host.h"

namespace hostkit {

/// A velocity texture as the library uploaded it, RGBA8, the bottom row first.
struct VelocityField {
    int columns = 0;
    int rows = 0;
    std::vector<std::uint8_t> bytes;
};

/// Start times of a frame's parts; empty for a part that the frame does not have.
struct FrameMoments {
    using Moment = std::optional<std::chrono::steady_clock::time_point>;
    /// The library's first GL call: the host's own step is done.
    Moment begin;
    /// The upload of the velocities, directly after the wait for the previous frame's solver step; only with ink.
    Moment solverDone;
    Moment firstDraw;
};

/// Reads the library's velocities, ink and times off its GL calls. It relies on two facts: the velocities are the only
/// upload of a frame with the size of their grid, and the ink is on one known texture unit while the water mesh is
/// drawn. One at a time: it takes the GL recorder.
class EffectProbe {
public:
    EffectProbe();
    ~EffectProbe();
    EffectProbe(const EffectProbe&) = delete;
    EffectProbe& operator=(const EffectProbe&) = delete;

    /// Forgets all, for a new host with a screen of that size in pixels.
    void watch(int width, int height, bool hostHasInk);
    /// The GL context is lost, and the ink's texture with it.
    void forgetInk() { ink = 0; }
    /// Draws the host's frame.
    void draw(EffectHost& host);

    /// Of every velocity texture.
    const Digest& velocityDigest() const { return digest; }
    const VelocityField& velocity() const { return field; }
    /// The GL name of the texture with the ink; 0 before the first frame with ink.
    std::uint32_t inkTexture() const { return ink; }
    /// Of the last frame.
    const FrameMoments& moments() const { return lastMoments; }

private:
    void seeCall(const char* function);
    void seeUpload(int width, int height, std::span<const std::uint8_t> bytes);

    int screenWidth = 0, screenHeight = 0;
    bool hasInk = false;
    bool drawing = false;
    Digest digest;
    VelocityField field;
    std::uint32_t ink = 0;
    FrameMoments lastMoments;
};

}  // namespace hostkit
