#pragma once

#include <jni.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/gl_recorder.h"
#include "hostkit/jni_environment.h"
#include "hostkit/native.h"
#include "tests/touch_codes.h"

namespace gltest {

namespace native = hostkit::native;
using hostkit::GlKind;
using hostkit::JniEnvironment;

constexpr int meshColumns = 5, meshRows = 4;
constexpr int meshWidth = 24, meshHeight = 36;
constexpr int pictureSize = 32;

/// RGBA bytes, rows in the order in which GL takes and gives them.
using Bytes = std::vector<std::uint8_t>;

/// Smooth, so that a small error of a texture coordinate stays a small error of the colour.
Bytes smoothPicture(int phase);

/// What a frame is given beside its arrays.
struct FrameArguments {
    int indexCount = (meshColumns - 1) * (meshRows - 1) * 6;
    float refractiveIndex = 1.5f, alpha = 0.5f, alphaRatio1Scale = 0.75f;
    float inkRed = 0.25f, inkGreen = 0.5f, inkBlue = 0.95f;
    float fresnelRatio = 0.5f, specularRatio = 3.0f, exponent = 4.0f;
    bool useSecondBackground = false;
};

/// A host with everything within reach of a test: a small mesh, three smooth pictures, a context.
/// The library has one state for all tests of a program, so a scene starts with the gesture ended,
/// the touch at (0, 0) and the settings written.
struct Scene {
    Scene(int width, int height, bool ink);
    ~Scene();

    void setting(int width, int height, bool ink);
    /// onInitUVHBuffer, onInitGPU, the three pictures.
    void setUp();
    /// The calls of each; the objects that they make have names in the lines.
    std::string initBuffers();
    std::string initGpu();
    jint load(const Bytes& rgba, int index);
    void touch(int x, int y, jint action, float pressure = 1.0f);
    void draw();
    /// From now on the calls have no effect on any pixel, which makes frames quick.
    void rasteriseNothing() const;
    /// The calls of one frame.
    std::string recordedFrame();
    /// The arguments of the uniforms that a frame sets, by PROGRAM.NAME; of several, the last.
    std::map<std::string, std::string> uniformsOfFrame();

    bool inkEnabled;
    hostkit::GlContext context;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    JniEnvironment jni;
    JNIEnv* env = jni.env();
    jfloatArray positions, heights, matrix;
    jshortArray indices;
    FrameArguments arguments;
};

/// Overwrites the texture bound on a unit: from a hook, just before a draw reads it.
void overwrite(GLenum unit, int width, int height, const Bytes& rgba);

}  // namespace gltest
