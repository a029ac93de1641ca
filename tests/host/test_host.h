#pragma once

#include <jni.h>
#include <standin_bitmap.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/instruments/checked_jni.h"
#include "hostkit/instruments/gl_recorder.h"
#include "tests/host/loaded_library.h"
#include "tests/touch_codes.h"

namespace testhost {

using hostkit::JniEnvironment;

/// RGBA bytes, rows in the order in which GL takes and gives them.
using Bytes = std::vector<std::uint8_t>;

/// A mesh as the host hands it to a frame: counts of vertices, size in mesh units, column-major
/// matrix.
struct Mesh {
    int columns, rows, width, height;
    std::array<float, 16> matrix;
};
/// Four vertices that cover the screen.
constexpr Mesh quadMesh = {2, 2, 2, 2, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
/// Sheared, moved and not symmetric, so that a transposed matrix shows; depth stays inside the clip
/// range.
constexpr Mesh shearedMesh = {5,
                              4,
                              24,
                              36,
                              {0.07f, 0.006f, 0.01f, 0, -0.008f, 0.045f, 0.004f, 0, 0.02f, 0.03f,
                               0.1f, 0, 0.05f, -0.04f, 0.1f, 1}};

constexpr int pictureSize = 32;
/// Smooth, so that a small error of a texture coordinate stays a small error of the colour.
Bytes smoothPicture(int phase);

/// What a frame is given beside its arrays.
struct FrameArguments {
    int indexCount;
    float refractiveIndex = 1.5f, alpha = 0.5f, alphaRatio1Scale = 0.75f;
    float inkRed = 0.25f, inkGreen = 0.5f, inkBlue = 0.95f;
    float fresnelRatio = 0.5f, specularRatio = 3.0f, exponent = 4.0f;
    bool useSecondBackground = false;
};

/// A host around a library that has just been loaded, with everything within reach of a test. Made,
/// it has a context and a flat mesh, and has called nothing yet.
struct TestHost {
    TestHost(int screenWidth, int screenHeight, const Mesh& chosenMesh = shearedMesh);
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    /// Everything that a host does on a new context: settings, buffers, resources, pictures.
    void setUp(bool ink = true);

    void newContext();
    void setting(bool ink = true);
    void setting(int screenWidth, int screenHeight, bool ink);
    /// The calls of each; the objects that they make have names in the lines.
    std::string initBuffers();
    std::string initGpu();
    /// A square picture.
    jint load(const Bytes& rgba, int index);
    jint load(StandInBitmap& bitmap, int index);

    void touch(int x, int y, jint action, float pressure = 1.0f);
    void clear();
    jint shownInk();
    void draw(int frames = 1);
    /// The calls of one frame.
    std::string recordedFrame();
    /// The arguments of the uniforms that a frame sets, by PROGRAM.NAME; of several, the last.
    std::map<std::string, std::string> uniformsOfFrame();

    /// From now on only the lower left corner of each target is rasterised, so many pixels wide and
    /// high, which makes frames quick.
    void rasterise(int side);

    const fuzz::NativeMethods& native() const { return loaded.methods; }

    int width, height;
    bool inkEnabled = false;
    Mesh mesh;
    /// Those that setUp loads, by index; none where empty.
    std::array<Bytes, 3> pictures = {smoothPicture(0), smoothPicture(5), smoothPicture(10)};
    FrameArguments arguments{6 * (mesh.columns - 1) * (mesh.rows - 1)};
    LoadedLibrary loaded;
    std::optional<hostkit::GlContext> context;
    std::optional<int> rasterisedSide;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    hostkit::CheckedJni jni;
    JNIEnv* env = jni.env();
    jfloatArray positions, heights, matrix;
    jshortArray indices;
};

/// Overwrites the texture bound on a unit: from a hook, just before a draw reads it.
void overwrite(unsigned unit, int width, int height, const Bytes& rgba);

}  // namespace testhost
