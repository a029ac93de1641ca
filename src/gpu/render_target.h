#pragma once

#include <cstdint>

namespace velmora {

/// GL names of an off-screen RGBA8 colour target. The target exists if `framebuffer` is not 0.
struct RenderTarget {
    std::uint32_t framebuffer;
    std::uint32_t texture;  // colour attachment 0: linear filters, clamped to the edge
    std::int32_t width;     // texels
    std::int32_t height;
};

/// Makes a target, clears it to 0 and leaves the default framebuffer bound. Call it on the GL thread.
RenderTarget createRenderTarget(int width, int height);

/// Clears the bound framebuffer to ink density 0. Call it on the GL thread.
void clearBoundTarget();

/// Deletes the target's framebuffer and texture, if they exist. Call it on the GL thread.
void deleteRenderTarget(const RenderTarget& target);

}  // namespace velmora
