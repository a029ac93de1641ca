#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace hostkit {

/// Hooks that observe the library's GL calls. They run on the thread that makes the calls.
struct GlObserver {
    /// Hook that runs at the start of each observed call, before the real GL function. GL calls that the hook makes run
    /// no hooks.
    std::function<void(const char* function)> inside;
    /// Hook that receives the data of each texture upload with glTexImage2D. `bytes` is RGBA8 and valid only during the
    /// hook.
    std::function<void(int width, int height, std::span<const std::uint8_t> bytes)> textureUpload;

    /// Runs the hook `inside`, if there is one.
    /// @param function name of the GL function
    void noteCall(const char* function) const {
        if (inside) {
            inside(function);
        }
    }
    /// Runs the hook `textureUpload`, if there is one and the call passes data.
    /// @param width width of the texture
    /// @param height height of the texture
    /// @param pixels argument of glTexImage2D, or null
    void noteUpload(int width, int height, const void* pixels) const {
        if (pixels && textureUpload) {
            const auto texels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
            textureUpload(width, height, {static_cast<const std::uint8_t*>(pixels), 4 * texels});
        }
    }
};

/// Returns the program's observer. hostkit only declares this function: each program that calls it must supply the
/// definition, or link velmora-instruments, which contains one. The program must also supply a wrapper of each GL
/// function that it wants to observe, at least of glDrawElements and glTexImage2D. The linker binds the library's GL
/// calls to these wrappers. A wrapper calls the observer and the real GL function.
/// @return the observer
GlObserver& sharedGlObserver();

}  // namespace hostkit
