#pragma once

#include <GLES2/gl2.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/gl_recorder.h"
#include "hostkit/jni_environment.h"
#include "tests/robust/loaded_library.h"
#include "tests/touch_codes.h"

namespace robust {

const std::vector<std::uint8_t> magenta = {255, 0, 255, 255};

/// The colour of the background, which flat water without ink shows as it is.
const std::vector<std::uint8_t> background = {200, 100, 50, 255};

/// A host around a library that has just been loaded: a small screen under a mesh of one quad, one
/// colour behind it. The screen has the ink targets' size, and only the lower left corner of both
/// is rasterised, 160 pixels wide and high, in whose middle `tap` presses.
struct Stage {
    explicit Stage(int screenWidth = 512, int screenHeight = 1024)
        : width(screenWidth), height(screenHeight) {
        newContext();
        floats(positions, {-1, 1, 0, -1, -1, 0, 1, 1, 0, 1, -1, 0});
        floats(matrix, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
        const jshort quad[] = {0, 1, 3, 0, 3, 2};
        std::ranges::copy(quad, hostkit::JniEnvironment::elements(indices).begin());
    }
    ~Stage() {
        loaded.unload();
        hostkit::glRecorder().reset();
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    void newContext() {
        context.reset();
        context.emplace(width, height);
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, 160, 160);
    }
    void setting(bool ink = true) { native().onInitSetting(env, nullptr, width, height, ink); }
    void buffers() { native().onInitUVHBuffer(env, nullptr); }
    void resources() { native().onInitGPU(env, nullptr); }
    jint load(int index) {
        std::vector<std::uint8_t> pixel = background;
        StandInBitmap bitmap{};
        bitmap.info = {1, 1, 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0};
        bitmap.pixels = pixel.data();
        return load(index, bitmap);
    }
    jint load(int index, StandInBitmap& bitmap) {
        return native().LoadTextures(env, nullptr, reinterpret_cast<jobject>(&bitmap), index);
    }
    /// Everything that a host does on a new context.
    void setUp(bool ink = true) {
        setting(ink);
        buffers();
        resources();
        load(1);
    }
    void touch(int x, int y, jint action, float pressure = 1.0f) {
        native().onTouch(env, nullptr, x, y, action, pressure);
    }
    /// A tap's blot, 70 pixels from the left and the lower edge.
    void tap(jint action) { touch(70, height - 70, action); }
    void clear() { native().clearInkValue(env, nullptr); }
    jint shownInk() { return native().getClearInkValue(env, nullptr); }
    void draw(int frames = 1) {
        for (; frames > 0; --frames) {
            native().onDrawFrame(env, nullptr, positions, heights, indices, 12, 12, 6, matrix, 2, 2,
                                 2, 2, 1.33f, 1, 1, 1, 0.1f, 0.2f, 0.9f, 0.5f, 3, 4, false);
        }
    }
    /// What a frame sets the uniforms to, by PROGRAM.NAME.
    std::map<std::string, std::string> uniformsOfFrame() {
        hostkit::glRecorder().record([this] { draw(); });
        return hostkit::glRecorder().uniforms();
    }
    /// Paints the screen magenta: what is not drawn from now on stays so.
    static void paint() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glClearColor(1, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    /// The screen's pixel as far from the left as from the lower edge.
    static std::vector<std::uint8_t> pixel(int place) {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        std::vector<std::uint8_t> pixel(4);
        glReadPixels(place, place, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
        return pixel;
    }
    /// That of the next frame, on a painted screen.
    std::vector<std::uint8_t> pixelOfFrame(int place) {
        paint();
        draw();
        return pixel(place);
    }

    const fuzz::NativeMethods& native() const { return loaded.methods; }

    int width, height;
    LoadedLibrary loaded;
    std::optional<hostkit::GlContext> context;
    hostkit::JniEnvironment jni;
    JNIEnv* env = jni.env();
    jfloatArray positions = jni.newFloatArray(12), heights = jni.newFloatArray(12),
                matrix = jni.newFloatArray(16);
    jshortArray indices = jni.newShortArray(6);

private:
    static void floats(jfloatArray array, std::initializer_list<float> values) {
        std::ranges::copy(values, hostkit::JniEnvironment::elements(array).begin());
    }
};

/// The velocities of the last upload.
struct Uploads {
    Uploads() {
        hostkit::glRecorder().textureUpload = [this](int, int, auto bytes) {
            strongest = 0;
            for (std::size_t at = 0; at < bytes.size(); at += 2) {
                strongest = std::max(strongest, std::abs(bytes[at] + bytes[at + 1] / 255.0 - 127));
            }
        };
    }
    bool isStill() const { return strongest == 0; }
    /// The largest component, at most 127.
    double strongest = 0;
};

}  // namespace robust
