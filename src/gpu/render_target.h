#pragma once

#include <cstdint>

namespace velmora {

/// An off-screen RGBA8 colour target; GL names. It exists when `framebuffer` is not 0.
struct RenderTarget {
    std::uint32_t framebuffer;
    std::uint32_t texture;  // colour attachment 0: linear filters, clamped to the edge
    std::int32_t width;     // texels
    std::int32_t height;
};

/// Makes a target cleared to 0 and leaves the default framebuffer bound. GL thread.
RenderTarget createRenderTarget(int width, int height);

/// Clears the bound framebuffer to density 0. GL thread.
void clearBoundTarget();

/// Deletes what the target has of a framebuffer and a texture. GL thread.
void deleteRenderTarget(const RenderTarget& target);

}  // namespace velmora
