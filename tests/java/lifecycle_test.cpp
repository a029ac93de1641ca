// Tests the Java host that Android and the JVM share. After the same events, this host must draw the same frames as the
// C++ host.

#include <gtest/gtest.h>
#include <jni.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "hostkit/digest.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/native.h"
#include "tests/java/run_java.h"

namespace {

namespace fs = std::filesystem;
using hostkit::EffectHost;
using hostkit::Touch;
using hostkit::TouchAction;

constexpr int width = 180;
constexpr int height = 320;

/// Returns the effect settings that a Java scene computes if all its settings have their default values.
hostkit::EffectSettings settingsOfScene() {
    return {.alphaRatio1Scale = 0.06f, .fresnelRatio = 0.4f, .moveRipple = 2.4f * (0.4f / 2.4f)};
}

std::string lifecycle(const std::string& arguments) {
    return runJava("-cp " HOST_JAR ":" TEST_JAR ":" JSON_JAR " javahost.LifecycleCases " +
                   arguments)
        .output;
}

std::string digest(const EffectHost& host) {
    hostkit::Digest digest;
    const std::vector<std::uint8_t> pixels = host.pixels();
    addBytes(digest, std::as_bytes(std::span(pixels)));
    return hex(digest) + "\n";
}

/// Plays `count` frames of the stroke, from frame `from` on. The stroke starts in frame 1 and ends in frame 13.
void play(EffectHost& host, int from, int count,
          std::chrono::nanoseconds elapsed = hostkit::displayedFrame) {
    static const auto stroke = hostkit::loadGestureScript(STROKE_GESTURE);
    const auto scaled = scaledToScreen(stroke, host.width(), host.height());
    for (int frame = from; frame < from + count; ++frame) {
        host.frame(eventsOfFrame(scaled, frame), elapsed);
    }
}

TEST(Lifecycle, SurvivesReplacedSurfacesAndContexts) {
    EffectHost upright({.width = width, .height = height});
    play(upright, 0, 20);
    std::string expected = "drawn without a size false\nfirst " + digest(upright);
    play(upright, 20, 4);
    expected += "resumed " + digest(upright);
    EffectHost rotated({.width = height, .height = width});
    rotated.clearInk();
    play(rotated, 0, 20);
    expected += "rotated " + digest(rotated) + "more objects 0\n";
    rotated.loseContext();
    play(rotated, 20, 4);
    expected += "context lost " + digest(rotated);
    rotated.setBackgrounds(hostkit::makeTestImage(height, 2 * width), {});
    play(rotated, 24, 4);
    expected += "photo changed " + digest(rotated);
    EXPECT_EQ(lifecycle("surfaces " STROKE_GESTURE), expected + "photos made 3\n");
}

TEST(Lifecycle, OnlyTheScreenShownLastDraws) {
    EffectHost home({.width = width, .height = height});
    play(home, 0, 8);
    const std::string behind = digest(home);
    EffectHost preview({.width = 120, .height = 200});
    preview.clearInk();
    play(preview, 0, 20);
    std::string expected =
        "home " + behind + "preview " + digest(preview) + "home behind " + behind;
    hostkit::native::onInitSetting(home.jni().env(), nullptr, width, height, JNI_TRUE);
    home.loseContext();
    home.clearInk();
    home.touch({TouchAction::up, 96, 150, 0.6f});  // hiding the home screen lifts its finger
    play(home, 0, 20);
    expected += "home again " + digest(home) + "drawn while another renderer is active: false\n";
    EffectHost others({.width = 120, .height = 200});
    others.clearInk();
    others.frame();
    hostkit::native::onInitSetting(home.jni().env(), nullptr, width, height, JNI_TRUE);
    home.loseContext();
    home.clearInk();
    home.frame({}, 2 * hostkit::displayedFrame);
    EXPECT_EQ(lifecycle("engines " STROKE_GESTURE),
              expected + "drawn after the renderer is active again " + digest(home));
}

TEST(Lifecycle, OnlyTheFirstFingerCounts) {
    EffectHost host({.width = width, .height = height});
    for (const Touch& touch : {Touch{TouchAction::down, 40, 90, 0.6f},
                               {TouchAction::move, 60, 110, 0.6f},
                               {TouchAction::move, 90, 120, 0.6f},
                               {},
                               {TouchAction::move, 110, 150, 0.6f},
                               {TouchAction::up, 114, 152, 0.6f},
                               {},
                               {},
                               {},
                               {TouchAction::down, 60, 240, 0.6f},
                               {},
                               {},
                               {TouchAction::cancel, 60, 240, 0.6f},
                               {TouchAction::down, 100, 60, 0.3f},
                               {TouchAction::up, 100, 60, 0.3f}}) {
        if (touch.pressure > 0.0f) {
            host.touch(touch);
        }
        host.frame();
        host.frame();
    }
    EXPECT_EQ(
        lifecycle("fingers " STROKE_GESTURE),
        "fingers " + digest(host) + "pressure 0.6 0.3\n20 frames allocate less than 20 KB true\n");
}

TEST(Lifecycle, DrawsSixtyFramesPerSecondOnAFasterDisplay) {
    EffectHost host({.width = width, .height = height});
    play(host, 0, 2);
    for (int frame = 2; frame < 30; ++frame) {
        const auto at = [](int one) {
            return std::chrono::nanoseconds(one * 1'000'000'000LL / 60);
        };
        play(host, frame, 1, at(frame) - at(frame - 1));
    }
    std::string expected = "120 Hz, 30 " + digest(host);
    for (const char* rate : {"60", "75", "90", "120", "144", "240"}) {
        expected.append(rate).append(" Hz, 600\n");
    }
    EXPECT_EQ(lifecycle("rates " STROKE_GESTURE), expected);
}

/// Draws until the ink has been cleared and the water is idle. `frames` is the number of frames that are already drawn,
/// including one frame after the last touch. Returns the total number of frames.
int drawUntilIdle(EffectHost& host, int frames) {
    // A tap takes 13 frames. The fade starts 35 frames later and takes 68 frames. One of these 116 frames has already
    // been drawn.
    const int clearFrame = frames - 1 + 13 + 35 + 68;
    for (; frames < clearFrame; ++frames) {
        host.frame();
    }
    EXPECT_TRUE(host.inkShown());
    host.clearInk();
    do {
        host.frame();
        ++frames;
    } while (!host.water().idle);
    return frames;
}

TEST(Lifecycle, DrawsNothingWhileIdle) {
    EffectHost host({.width = width / 2,
                     .height = height / 2,
                     .effect = settingsOfScene(),
                     .water = {.shortSideCells = 24,
                               .waveSpeed = 0.365f * 0.4f * 0.365f * 0.4f,
                               .rippleRadius = 0.8}});
    play(host, 0, 14);
    const int frames = drawUntilIdle(host, 14);
    const std::string drawn = std::to_string(frames);
    std::string expected =
        "idle after " + drawn + " " + digest(host) + "frames while idle " + drawn + "\n";
    play(host, 1, 9);
    host.touch({TouchAction::up, 65, 80, 0.6f});
    host.frame();
    expected += "idle again after " + std::to_string(drawUntilIdle(host, frames + 10)) + " ";
    expected += digest(host) + "frames behind the preview 0\nframes after the preview 1 " +
                digest(host) + "frames after a rotation 1\nframes while nothing is shown 2\n";
    EXPECT_EQ(lifecycle("idle " STROKE_GESTURE), expected);
}

TEST(Lifecycle, RedrawsOneFrameIfAnIdleScreenLosesItsContext) {
    EffectHost host({.width = width, .height = height});
    host.frame();
    const std::string picture = digest(host);
    EXPECT_EQ(lifecycle("losses " STROKE_GESTURE), "idle after 1 " + picture + "context lost, 2 " +
                                                       picture + "frame lost, 3 " + picture +
                                                       "released, 4 " + picture);
}

TEST(Lifecycle, AGestureWaitsWhileAnotherRendererDraws) {
    EffectHost host({.width = width, .height = height});
    play(host, 0, 5);
    hostkit::native::onInitSetting(host.jni().env(), nullptr, width, height, JNI_TRUE);
    host.loseContext();
    host.clearInk();
    play(host, 5, 1, 3 * hostkit::displayedFrame);
    play(host, 6, 14);
    EXPECT_EQ(lifecycle("player " STROKE_GESTURE), "played " + digest(host) + "false\n");
}

/// A C++ host in which the same rain falls as in the Java host: 40 drops per second.
class RainyHost {
public:
    void frame(std::chrono::nanoseconds elapsed) {
        dropsDue += 40.0 * (static_cast<double>(elapsed.count()) / 1e9);
        for (; dropsDue >= 1.0; dropsDue -= 1.0) {
            const double x = chance() * host.width();
            const double y = chance() * host.height();
            const float strength = static_cast<float>(0.15 + 0.35 * chance()) * 2.4f;
            hostkit::rippleAt(host.water(), host.jni(), x, y, strength);
        }
        host.frame({}, elapsed);
    }

    EffectHost host{{.width = width / 2,
                     .height = height / 2,
                     .inkEnabled = false,
                     .effect = settingsOfScene(),
                     .water = {.shortSideCells = 24,
                               .waveSpeed = 0.365f * 0.4f * 0.365f * 0.4f,
                               .rippleRadius = 0.8}}};

private:
    double chance() {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<double>(seed >> 8) / (1 << 24);
    }

    double dropsDue = 0.0;
    std::uint32_t seed = 1;
};

TEST(Lifecycle, RainDoesNotCatchUpWithAPause) {
    constexpr auto frame = hostkit::displayedFrame;
    RainyHost rainy;
    for (int number = 0; number < 21; ++number) {
        rainy.frame(number == 10 ? 4 * frame : frame);
    }
    const auto rain = [](std::chrono::nanoseconds drawnAfter, std::chrono::nanoseconds pause) {
        return lifecycle("rain " STROKE_GESTURE " " + std::to_string(drawnAfter.count()) + " " +
                         std::to_string(pause.count()));
    };
    EXPECT_EQ(rain(std::chrono::hours(1), std::chrono::hours(1)), "rain " + digest(rainy.host));
    // `drawNow` can draw a frame whose time is later than the time of the display's next frame. The effect's time must
    // not go back in that next frame.
    EXPECT_EQ(rain(3 * frame, frame * 0), rain(3 * frame, 2 * frame));
}

TEST(Lifecycle, RainEndsSomeTimeAfterTheLastTouch) {
    EXPECT_EQ(lifecycle("'rain ends' " STROKE_GESTURE), "true\ntrue\n");
}

TEST(Lifecycle, WavesContinueAfterSettingsChange) {
    EffectHost host({.width = width, .height = height});
    play(host, 0, 8);
    host.effectSettings() = settingsOfScene();
    host.replaceWater({.shortSideCells = 120,
                       .damping = std::pow(0.97f, 0.5f),
                       .waveSpeed = 0.365f * 0.365f,
                       .stepsPerSecond = 120,
                       .rippleRadius = 4.0});
    play(host, 8, 4);
    EXPECT_EQ(lifecycle("settings " STROKE_GESTURE), "finer " + digest(host));
}

TEST(Lifecycle, TheChosenSettingsSurviveTheProcess) {
    const fs::path folder = fs::current_path() / "java-store";
    fs::remove_all(folder);
    EXPECT_EQ(
        lifecycle("store " STROKE_GESTURE " " + folder.string()),
        "photo null, preset '', default settings true\n"
        "photo of 2 bytes, old photo exists false, preset 'my rain', saved settings true, "
        "files 2\n"
        "files 2\ndamaged photo refused\ndefault settings true\npreset refused\nphoto refused\n"
        "files 2\n");
    fs::remove_all(folder);
}

}  // namespace
