#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "hostkit/effect_host.h"
#include "player/digest.h"
#include "player/size.h"

namespace player {

/// A velocity texture as the library uploaded it, RGBA8, the bottom row first.
struct VelocityField {
    int columns = 0;
    int rows = 0;
    std::vector<std::uint8_t> bytes;
};

/// Sees at the library's GL calls what it draws with. One at a time: it takes the GL recorder.
class EffectTap {
public:
    EffectTap();
    ~EffectTap();
    EffectTap(const EffectTap&) = delete;
    EffectTap& operator=(const EffectTap&) = delete;

    /// Forgets all, for a new host of that screen.
    void watch(Size screenOfHost, bool hostHasInk);
    /// The GL context is lost, and the ink's texture with it.
    void forgetInk() { ink = 0; }
    /// Draws the host's frame.
    void draw(hostkit::EffectHost& host);

    /// Of every velocity texture.
    const Digest& velocityDigest() const { return digest; }
    const VelocityField& velocity() const { return field; }
    /// The GL name of the texture with the ink; 0 before the first frame with ink.
    std::uint32_t inkTexture() const { return ink; }
    /// When the last frame's velocities were complete; nothing for a frame without.
    std::optional<std::chrono::steady_clock::time_point> solverReady() const { return ready; }

private:
    void seeCall(const char* function);
    void seeUpload(int width, int height, std::span<const std::uint8_t> bytes);

    Size screen{};
    bool hasInk = false;
    bool drawing = false;
    Digest digest;
    VelocityField field;
    std::uint32_t ink = 0;
    std::optional<std::chrono::steady_clock::time_point> ready;
};

}  // namespace player
