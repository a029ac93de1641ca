#pragma once

#include <jni.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "hostkit/gesture_script.h"
#include "hostkit/gl_context.h"
#include "hostkit/image.h"
#include "hostkit/jni_environment.h"
#include "hostkit/screen.h"
#include "hostkit/water_driver.h"

namespace hostkit {

/// Settings of the image that onDrawFrame takes for each frame, and strengths of the ripples of a touch.
struct EffectSettings {
    /// Refractive index: 1 is no refraction, 1.33 is water.
    float refractiveIndex = 1.33f;
    /// Weight of the reflection on waves, multiplied by `alphaRatio1Scale`; 0 is no reflection.
    float alpha = 1.0f;
    /// Second factor of that weight.
    float alphaRatio1Scale = 0.1f;
    /// Passed to the library, which does not use it.
    float alphaRatio2Scale = 1.0f;
    /// Extra reflection on slopes that face the light at the lower right; 0 is none.
    float fresnelRatio = 0.8f;
    /// Peak of the highlight as a factor of the reflection, clamped to 1 to 4.5 with ink and 1 to 5.5 without.
    float specularRatio = 3.0f;
    /// Sharpness of the highlight: 1 is broad, 24 is narrow.
    float exponent = 24.0f;
    /// Ink colour, 0 to 1 per channel. A new stroke recolours all visible ink. Dense ink transmits 1/2 of the light in
    /// a channel of value 1, 1/9 at 0.3, and 1/75 at 0, which looks black.
    InkColor ink = {0.3f, 0.7f, 1.0f};
    /// False: first background; true: second background.
    bool useSecondBackground = false;
    /// Strength of the ripple of a touch-down: a third of its peak height.
    float downRipple = 2.4f;
    /// Strength of each ripple of a move: a third of its peak height.
    float moveRipple = 0.4f;
};

/// Options of an EffectHost.
struct EffectHostOptions {
    /// Screen width in pixels.
    int width = 1080;
    /// Screen height in pixels.
    int height = 1920;
    /// False: water only, without solver and ink.
    bool inkEnabled = true;
    /// Reflection map. Empty: the result of makeReflectionMap.
    Image reflectionMap = {};
    /// First background, stretched over the screen. Empty: the result of makeTestImage.
    Image background = {};
    /// Second background, stretched over the screen. Empty: the result of makeTestImage.
    Image secondBackground = {};
    /// Initial settings of the image.
    EffectSettings effect = {};
    /// Initial settings of the water.
    WaterSettings water = {};
    /// Environment for the arrays, which must outlive the host. Null: the host creates an environment.
    JniEnvironment* jni = nullptr;
    /// Function of a host with a window. It destroys the GL context and all its objects, creates a new one, and makes
    /// it current. A context must be current when the host is constructed. Empty: the host creates an off-screen
    /// context.
    std::function<void()> renewContext = {};
};

/// Duration of a frame of a display with 60 frames per second.
constexpr std::chrono::nanoseconds displayedFrame(16'666'667);

/// A host of the library without a window and a JVM. It makes the native calls in the required order. The library has
/// one global state, so use one host at a time. Call all functions on one thread, on which the GL context is current.
/// The ink advances per frame, so draw 60 frames per second.
class EffectHost {
public:
    /// Sets up the library, the GL context, the images and the water. Throws HostError if there is no GL context or the
    /// library refuses an image.
    /// @param options options of the host
    explicit EffectHost(EffectHostOptions options);

    /// Runs and draws one frame: calls `step`, then `draw`.
    /// @param events events to apply, in order
    /// @param elapsed time by which the water advances
    void frame(std::span<const ScriptEvent> events = {},
               std::chrono::nanoseconds elapsed = displayedFrame);

    /// Applies events and advances the water. Draws nothing. Throws HostError if an event replaces the GL context and
    /// that fails.
    /// @param events events to apply, in order; their frame numbers are not used
    /// @param elapsed time by which the water advances
    void step(std::span<const ScriptEvent> events, std::chrono::nanoseconds elapsed);
    /// Advances the ink by one frame and draws the effect into the default framebuffer.
    void draw();

    /// Reads the default framebuffer.
    /// @return 4 * width * height bytes: RGBA, rows from top to bottom
    std::vector<std::uint8_t> pixels() const { return readScreen(options.width, options.height); }

    /// Passes one touch event to the ink, and to the water as ripples.
    /// @param touch event in pixels of the screen, y down
    void touch(const Touch& touch);
    /// Removes the ink and ends the gesture.
    void clearInk();
    /// Tells whether the library shows ink.
    /// @return false after a cancel event or clearInk, until the next other touch event
    bool inkShown();
    /// Replaces the GL context and creates the GL objects anew. The ink is lost. Throws HostError on failure.
    void loseContext();
    /// Replaces the backgrounds. Throws HostError if the library refuses an image.
    /// @param background first background; empty: the result of makeTestImage
    /// @param secondBackground second background; empty: the result of makeTestImage
    void setBackgrounds(Image background, Image secondBackground);
    /// Replaces the first background. Throws HostError if the library refuses the image.
    /// @param background first background; not empty
    void setBackground(Image background);
    /// Replaces the grid and the mesh of the water. Waves and ink stay.
    /// @param settings new settings of the water
    void replaceWater(WaterSettings settings);

    /// Returns the settings of the image for changing. A change takes effect with the next frame.
    /// @return the settings
    EffectSettings& effectSettings() { return options.effect; }
    /// Returns the settings of the image.
    /// @return the settings
    const EffectSettings& effectSettings() const { return options.effect; }
    /// Returns the water for changing. Replace grid and mesh with replaceWater.
    /// @return the water; its address stays the same
    WaterDriver& water() { return *waterDriver; }
    /// Returns the water.
    /// @return the water; its address stays the same
    const WaterDriver& water() const { return *waterDriver; }
    /// Returns the environment that owns the arrays.
    /// @return the environment
    JniEnvironment& jni() { return environment; }
    /// Returns the off-screen context. Do not call it on a host with `renewContext`, which has no such context.
    /// @return the context
    const GlContext& gl() const { return *context; }
    /// Returns the screen width.
    /// @return width in pixels
    int width() const { return options.width; }
    /// Returns the screen height.
    /// @return height in pixels
    int height() const { return options.height; }

private:
    void setUpContext();
    void loadTexture(Image& image, int index);
    void apply(const ScriptAction& action);
    void addRipples(const Touch& touch);

    EffectHostOptions options;
    JniEnvironment ownEnvironment;
    JniEnvironment& environment;
    /// Empty if `options.renewContext` is set.
    std::optional<GlContext> context;
    bool contextReady = false;
    std::optional<WaterDriver> waterDriver;
    jfloatArray mvpMatrix;
    std::optional<Touch> lastTouch;
};

}  // namespace hostkit
