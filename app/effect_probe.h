#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "app/size.h"
#include "hostkit/digest.h"
#include "hostkit/effect_host.h"
#include "hostkit/gl_observer.h"

namespace app {

/// Copy of the last velocity texture that the library uploaded: RGBA8, bottom row first.
struct VelocityField {
    int columns = 0;
    int rows = 0;
    std::vector<std::uint8_t> bytes;
};

/// Times of events within a frame. A time is empty if its event did not happen.
struct FrameMoments {
    using Moment = std::optional<std::chrono::steady_clock::time_point>;
    /// Time of the library's first GL call in the frame.
    Moment begin;
    /// Time at which the wait for the solver step of the previous frame ends. The probe measures this time at the
    /// velocity upload, which follows the wait. Empty in a frame without ink, which uploads no velocity.
    Moment solverDone;
    /// First draw call.
    Moment firstDraw;
};

/// Observes the velocities, the ink and the times of the library's frames through the library's GL calls. The probe
/// relies on two facts. First, only velocity uploads have the size of the velocity grid. Second, the library binds the
/// ink to a known texture unit while it draws the water mesh. Use one probe at a time, because a probe sets the hooks
/// of the GL observer.
class EffectProbe {
public:
    EffectProbe();
    ~EffectProbe();
    EffectProbe(const EffectProbe&) = delete;
    EffectProbe& operator=(const EffectProbe&) = delete;

    /// Resets the probe for a new host. `size` is the screen size in pixels.
    void watch(Size size, bool hostHasInk);
    /// Forgets the ink texture. Call it when the GL context is lost.
    void forgetInk() { ink = 0; }
    /// Draws a frame of the host and observes its GL calls.
    void draw(hostkit::EffectHost& host);

    /// Returns a digest of all velocity textures that were uploaded since the last call of `watch`.
    const hostkit::Digest& velocityDigest() const { return digest; }
    /// Returns the last velocity texture.
    const VelocityField& velocity() const { return field; }
    /// Returns the GL name of the ink texture, or 0 before the first frame with ink.
    std::uint32_t inkTexture() const { return ink; }
    /// Returns the size of the ink texture in texels.
    Size inkTextureSize() const;
    /// Returns the times of the last frame.
    const FrameMoments& moments() const { return lastMoments; }

private:
    void seeCall(const char* function);
    void seeUpload(int width, int height, std::span<const std::uint8_t> bytes);

    hostkit::GlObserver& observer;
    Size screen;
    bool hasInk = false;
    bool drawing = false;
    hostkit::Digest digest;
    VelocityField field;
    std::uint32_t ink = 0;
    FrameMoments lastMoments;
};

}  // namespace app
