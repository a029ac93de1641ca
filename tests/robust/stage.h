#pragma once

#include <GLES2/gl2.h>
#include <jni.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "tests/host/test_host.h"

namespace robust {

using namespace testhost;

const Bytes magenta = {255, 0, 255, 255};
/// Colour of the background. Flat water without ink shows this colour unchanged.
const Bytes background = {200, 100, 50, 255};

/// A host whose mesh is one quad and whose background has one colour. The screen has the size of the ink targets. Only
/// the lower left corner of the screen and of each target is drawn. `tap` touches the middle of this corner.
struct Stage : TestHost {
    explicit Stage(int screenWidth = 512, int screenHeight = 1024)
        : TestHost(screenWidth, screenHeight, quadMesh) {
        images = {Bytes(), background, Bytes()};
        rasterise(160);
    }
    /// Sends a touch event at a point that is 70 pixels from the left edge and 70 pixels from the lower edge.
    void tap(jint action) { touch(70, height - 70, action); }
    /// Paints the screen magenta. If the library does not draw a pixel afterwards, the pixel stays magenta.
    static void paint() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glClearColor(1, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    /// Returns the pixel whose distance from the left edge and from the lower edge is `place` pixels.
    static Bytes pixel(int place) {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        Bytes pixel(4);
        glReadPixels(place, place, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
        return pixel;
    }
    /// Paints the screen magenta, draws a frame and returns the pixel at `place`.
    Bytes pixelOfFrame(int place) {
        paint();
        draw();
        return pixel(place);
    }
};

/// Observes the velocities that the library uploads.
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
    /// Largest magnitude of a velocity component in the last upload, in cells per time unit; at most 127.
    double strongest = 0;
};

}  // namespace robust
