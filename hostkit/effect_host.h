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
#include "hostkit/jni_environment.h"
#include "hostkit/picture.h"
#include "hostkit/screen.h"
#include "hostkit/water_driver.h"

namespace hostkit {

/// The per-frame arguments that shape the picture, and how hard the finger strikes the water.
struct Look {
    /// 1 bends nothing; 1.33 is water.
    float refractiveIndex = 1.33f;
    /// Weight of the sheen on waves: alpha * alphaRatio1Scale; 0 leaves the refraction alone.
    float alpha = 1.0f;
    float alphaRatio1Scale = 0.1f;
    /// Handed over; has no effect on the picture.
    float alphaRatio2Scale = 1.0f;
    /// Extra sheen on slopes that face the light at the lower right.
    float fresnelRatio = 0.8f;
    /// Peak of the highlight, as a factor of the sheen between 1 and 4.5 (5.5 without ink).
    float specularRatio = 3.0f;
    /// Sharpness of the highlight.
    float exponent = 24.0f;
    /// Red, green, blue, 0 to 1; the stain takes on this colour. Full ink leaves a ninth of a
    /// channel at 0.3 and half of one at 1; at 0 a 75th, which is black on any picture.
    InkColor ink = {0.3f, 0.7f, 1.0f};
    bool useSecondBackground = false;
    /// Strength of the ripple of a touch that goes down, and of each move; a third of the peak height.
    float downRipple = 2.4f;
    float moveRipple = 0.4f;
};

struct EffectHostOptions {
    int width = 1080;
    int height = 1920;
    bool inkEnabled = true;
    /// Empty pictures are replaced: the sheen by makeSheen, the backgrounds by makeTestPicture.
    Picture sheen = {};
    Picture background = {};
    Picture secondBackground = {};
    Look look = {};
    WaterSettings water = {};
    /// The caller's environment, which outlives the host. Null: one of the host's own.
    JniEnvironment* jni = nullptr;
    /// Set by a host with a window: destroys the window's GL context with everything in it and
    /// makes a new one, current; one must be current when the host is made. Empty: an off-screen
    /// context of the host's own.
    std::function<void()> renewContext = {};
};

/// The time between two frames of a display, 60 a second.
constexpr std::chrono::nanoseconds displayedFrame(16'666'667);

/// A device's host around the library, without window and JVM: sets everything up in the order that
/// the library asks for, then draws frame by frame. The library has one state, so use one host at a
/// time. Everything runs on the thread that calls, which holds the GL context.
class EffectHost {
public:
    /// Throws HostError when no GL context can be had or a picture is refused.
    explicit EffectHost(EffectHostOptions options);

    /// One frame: applies the events, in order, lets the water run for `elapsed` and draws.
    void frame(std::span<const ScriptEvent> events = {},
               std::chrono::nanoseconds elapsed = displayedFrame);

    /// The two halves of a frame: what happens to the water, then the picture with its ink.
    void step(std::span<const ScriptEvent> events, std::chrono::nanoseconds elapsed);
    void draw();

    /// The default framebuffer as RGBA bytes, rows top to bottom.
    std::vector<std::uint8_t> pixels() const { return readScreen(options.width, options.height); }

    /// One touch event in screen pixels, y down: to the ink, and as a ripple to the water.
    void touch(const Touch& touch);
    void clearInk();
    /// Whether ink is shown: false after a cancel or a clear.
    bool inkShown();
    /// Destroys the GL context with everything in it and sets up a new one.
    void loseContext();
    void setBackgrounds(Picture background, Picture secondBackground);
    /// Another grid for the water; its waves stay, and so does the ink.
    void replaceWater(WaterSettings settings);

    Look& look() { return options.look; }
    const Look& look() const { return options.look; }
    WaterDriver& water() { return *waterDriver; }
    const WaterDriver& water() const { return *waterDriver; }
    JniEnvironment& jni() { return environment; }
    /// The host's own context, where it has one.
    const GlContext& gl() const { return *context; }
    int width() const { return options.width; }
    int height() const { return options.height; }

private:
    void setUpContext();
    void loadTexture(Picture& picture, int index);
    void apply(const ScriptAction& action);
    void strikeWater(const Touch& touch);

    EffectHostOptions options;
    JniEnvironment ownEnvironment;
    JniEnvironment& environment;
    /// Absent where the window has the context.
    std::optional<GlContext> context;
    bool contextReady = false;
    std::optional<WaterDriver> waterDriver;
    jfloatArray mvpMatrix;
    std::optional<Touch> lastTouch;
};

}  // namespace hostkit
