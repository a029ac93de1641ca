#pragma once

#include <cstdint>
#include <vector>

#include "hostkit/screen.h"

namespace hostkit {

/// Lets a software rasteriser filter finely enough for the ink, which keeps its value in two
/// channels, a coarse and a fine one. Call before the first context is made.
void askForFineFiltering();

/// An OpenGL ES 2.0 context of its own, with an off-screen RGBA8888 surface as its default
/// framebuffer; runs on Mesa's software rasteriser without a display. Several may live at once,
/// each current on one thread.
class GlContext {
public:
    /// Makes the context current. Throws HostError where the machine has none to give.
    GlContext(int width, int height);
    ~GlContext();
    GlContext(GlContext&& other) noexcept;
    GlContext& operator=(GlContext&& other) noexcept;

    void makeCurrent() const;

    int width() const { return surfaceWidth; }
    int height() const { return surfaceHeight; }

    /// The default framebuffer as RGBA bytes, rows top to bottom. The context must be current.
    std::vector<std::uint8_t> readPixels() const { return readScreen(surfaceWidth, surfaceHeight); }

private:
    GlContext(void* onDisplay, int width, int height);

    void* display = nullptr;
    void* context = nullptr;
    void* surface = nullptr;
    int surfaceWidth = 0;
    int surfaceHeight = 0;
};

}  // namespace hostkit
