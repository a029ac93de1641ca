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

/// Settings of the drawing, which the host passes to onDrawFrame in each frame. Also the strengths of the ripples that
/// a touch raises.
struct EffectSettings {
    /// Refractive index: 1 means no refraction, 1.33 is the index of water.
    float refractiveIndex = 1.33f;
    /// Strength of the reflection on waves; 0 turns it off. The library multiplies it by `alphaRatio1Scale`.
    float alpha = 1.0f;
    /// Factor of `alpha`.
    float alphaRatio1Scale = 0.1f;
    /// Argument of onDrawFrame that the library does not use.
    float alphaRatio2Scale = 1.0f;
    /// Strength of the extra reflection on slopes that face the light; 0 turns it off. The light is at the lower right.
    float fresnelRatio = 0.8f;
    /// Brightness factor of the reflection at the peak of the highlight. Clamped to [1, 4.5] in a frame with ink, else
    /// to [1, 5.5].
    float specularRatio = 3.0f;
    /// Sharpness of the highlight: 1 gives a broad highlight, 24 a narrow one.
    float exponent = 24.0f;
    /// Ink colour, 0 to 1 per channel. A new stroke recolours all visible ink. If a channel of the colour is 1, dense
    /// ink transmits 1/2 of the light in this channel. It transmits 1/9 if the channel is 0.3, and 1/75, which looks
    /// black, if it is 0.
    InkColor ink = {0.3f, 0.7f, 1.0f};
    /// True to draw the second background, false to draw the first.
    bool useSecondBackground = false;
    /// Strength of the ripple of a touch-down event. The height of the ripple is three times its strength.
    float downRipple = 2.4f;
    /// Strength of each ripple of a finger movement. The height of the ripple is three times its strength.
    float moveRipple = 0.4f;
};

/// Options of an EffectHost.
struct EffectHostOptions {
    /// Screen width in pixels.
    int width = 1080;
    /// Screen height in pixels.
    int height = 1920;
    /// True for water and ink, false for water only. Without ink, the solver and the ink passes do not run.
    bool inkEnabled = true;
    /// Reflection map. If empty, the host uses makeReflectionMap.
    Image reflectionMap = {};
    /// First background, stretched over the screen. If empty, the host uses makeTestImage.
    Image background = {};
    /// Second background, stretched over the screen. If empty, the host uses makeTestImage.
    Image secondBackground = {};
    /// Initial settings of the drawing.
    EffectSettings effect = {};
    /// Initial settings of the water.
    WaterSettings water = {};
    /// Environment that creates the JNI arrays. It must outlive the host. If null, the host creates an environment of
    /// its own.
    JniEnvironment* jni = nullptr;
    /// Function that destroys the GL context, creates a new context and makes it current. A host with a window supplies
    /// this function. In this case, a context must be current when the EffectHost is constructed. If empty, the host
    /// uses an off-screen context and replaces it itself.
    std::function<void()> renewContext = {};
};

/// Duration of one frame at 60 frames per second.
constexpr std::chrono::nanoseconds displayedFrame(16'666'667);

/// A host of the library that needs no window and no JVM. It makes the native calls in the required order. The library
/// has one global state, so use one host at a time. Call all functions on the thread on which the GL context is
/// current. Call `draw` 60 times per second, because the ink advances by one step per frame.
class EffectHost {
public:
    /// Sets up the library, the GL context, the images and the water. Throws HostError if no GL context can be created
    /// or the library rejects an image.
    /// @param options options of the host
    explicit EffectHost(EffectHostOptions options);

    /// Advances the effect by one frame and draws it: calls `step`, then `draw`.
    /// @param events events to apply, in order
    /// @param elapsed time by which the water advances
    void frame(std::span<const ScriptEvent> events = {},
               std::chrono::nanoseconds elapsed = displayedFrame);

    /// Applies events and advances the water, but draws nothing. Throws HostError if an event replaces the GL context
    /// and the replacement fails.
    /// @param events events to apply, in order; their frame numbers are ignored
    /// @param elapsed time by which the water advances
    void step(std::span<const ScriptEvent> events, std::chrono::nanoseconds elapsed);
    /// Advances the ink by one frame and draws the effect into the default framebuffer.
    void draw();

    /// Reads the pixels of the default framebuffer.
    /// @return 4 * width * height bytes: RGBA, rows from top to bottom
    std::vector<std::uint8_t> pixels() const { return readScreen(options.width, options.height); }

    /// Passes a touch event to the library, which draws the ink. Also raises the ripples of the event in the water.
    /// @param touch event in pixels of the screen, y down
    void touch(const Touch& touch);
    /// Removes the ink and ends the current gesture.
    void clearInk();
    /// Tells whether the library shows ink.
    /// @return false after a cancel event or clearInk, until a down, move or up event
    bool inkShown();
    /// Replaces the GL context and creates all GL objects again. The ink is lost. Throws HostError on failure.
    void loseContext();
    /// Replaces both backgrounds. Throws HostError if the library rejects an image.
    /// @param background first background; if empty, makeTestImage supplies it
    /// @param secondBackground second background; if empty, makeTestImage supplies it
    void setBackgrounds(Image background, Image secondBackground);
    /// Replaces the first background. Throws HostError if the library rejects the image.
    /// @param background first background; not empty
    void setBackground(Image background);
    /// Replaces the grid and the mesh of the water. Keeps the waves and the ink.
    /// @param settings new settings of the water
    void replaceWater(WaterSettings settings);

    /// Returns the drawing settings. The caller can change them; a change takes effect in the next frame.
    /// @return the settings
    EffectSettings& effectSettings() { return options.effect; }
    /// Returns the drawing settings.
    /// @return the settings
    const EffectSettings& effectSettings() const { return options.effect; }
    /// Returns the water. The caller can change its waves; only replaceWater can change the grid or the mesh.
    /// @return the water; its address never changes
    WaterDriver& water() { return *waterDriver; }
    /// Returns the water.
    /// @return the water; its address never changes
    const WaterDriver& water() const { return *waterDriver; }
    /// Returns the environment that owns the JNI arrays.
    /// @return the environment
    JniEnvironment& jni() { return environment; }
    /// Returns the off-screen context. If `renewContext` is set, there is no such context, and this function must not
    /// be called.
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
