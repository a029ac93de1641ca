#pragma once

#include <cstdint>
#include <vector>

#include "hostkit/screen.h"

namespace hostkit {

/// Makes Mesa's software rasteriser filter textures with more than 8 bits. The ink needs this precision, because a
/// coarse and a fine colour channel together store each density. Sets an environment variable, so call this function
/// before the process creates a GL context or starts a thread. GlContext calls this function itself.
void askForFineFiltering();

/// Returns true if contexts use a graphics card, because the environment variable VELMORA_GPU is 1.
/// @return false if contexts use Mesa's software rasteriser
bool usesGraphicsCard();

/// An OpenGL ES 2.0 context with an off-screen RGBA8888 surface as its default framebuffer. It needs no display server.
/// A context uses the first graphics card if `usesGraphicsCard` returns true, else Mesa's software rasteriser. A
/// program can have several contexts; each context is current on at most one thread at a time.
class GlContext {
public:
    /// Creates a context and makes it current on the calling thread. Throws HostError if EGL fails.
    /// @param width width of the surface in pixels
    /// @param height height of the surface in pixels
    GlContext(int width, int height);
    /// Destroys the context and its GL objects.
    ~GlContext();
    /// Moves a context into a new object. A context that is current stays current.
    /// @param other object to move from; it has no context afterwards
    GlContext(GlContext&& other) noexcept;
    /// Swaps the two contexts.
    /// @param other the other context
    /// @return this context
    GlContext& operator=(GlContext&& other) noexcept;

    /// Makes the context current on the calling thread. Throws HostError on failure.
    void makeCurrent() const;

    /// Returns the width of the surface.
    /// @return width in pixels
    int width() const { return surfaceWidth; }
    /// Returns the height of the surface.
    /// @return height in pixels
    int height() const { return surfaceHeight; }

    /// Reads the pixels of the default framebuffer. The context must be current.
    /// @return 4 * width * height bytes: RGBA, rows from top to bottom
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
