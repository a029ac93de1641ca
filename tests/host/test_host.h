#pragma once

#include <GLES2/gl2.h>
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

/// RGBA bytes with rows in GL's order.
using Bytes = std::vector<std::uint8_t>;

/// A mesh as the host passes it to a frame: numbers of vertices, size in mesh units, column-major matrix.
struct Mesh {
    int columns, rows, width, height;
    std::array<float, 16> matrix;
};
/// Four vertices that cover the screen.
constexpr Mesh quadMesh = {2, 2, 2, 2, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
/// Sheared, moved and not symmetric, so that a transposed matrix changes the picture. The depth stays in the
/// clip range.
constexpr Mesh shearedMesh = {5,
                              4,
                              24,
                              36,
                              {0.07f, 0.006f, 0.01f, 0, -0.008f, 0.045f, 0.004f, 0, 0.02f, 0.03f,
                               0.1f, 0, 0.05f, -0.04f, 0.1f, 1}};

constexpr int pictureSize = 32;
/// Returns a smooth picture: a small error of a texture coordinate gives a small error of the colour.
Bytes smoothPicture(int phase);

/// Arguments of a frame besides its arrays.
struct FrameArguments {
    int indexCount;
    float refractiveIndex = 1.5f, alpha = 0.5f, alphaRatio1Scale = 0.75f;
    float inkRed = 0.25f, inkGreen = 0.5f, inkBlue = 0.95f;
    float fresnelRatio = 0.5f, specularRatio = 3.0f, exponent = 4.0f;
    bool useSecondBackground = false;
};

/// A host around a freshly loaded library. All its parts are public for the tests. The constructor makes a context and
/// a flat mesh and calls nothing.
struct TestHost {
    TestHost(int screenWidth, int screenHeight, const Mesh& chosenMesh = shearedMesh);
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    /// Does the set-up of a host on a new context: settings, buffers, resources, pictures.
    void setUp(bool ink = true);

    void newContext();
    void setting(bool ink = true);
    void setting(int screenWidth, int screenHeight, bool ink);
    /// Return the recorded GL calls, in which the new objects have names.
    std::string initBuffers();
    std::string initGpu();
    /// Loads a square picture.
    jint load(const Bytes& rgba, int index);
    jint load(StandInBitmap& bitmap, int index);

    void touch(int x, int y, jint action, float pressure = 1.0f);
    void clear();
    jint shownInk();
    void draw(int frames = 1);
    /// Draws a frame and returns its GL calls.
    std::string recordedFrame();
    /// Draws a frame and returns the last arguments of each uniform, by PROGRAM.NAME.
    std::map<std::string, std::string> uniformsOfFrame();

    /// Limits rasterisation to the lower left corner of each target, `side` pixels wide and high. This makes frames
    /// fast.
    void rasterise(int side);

    const fuzz::NativeMethods& native() const { return loaded.methods; }

    int width, height;
    bool inkEnabled = false;
    Mesh mesh;
    /// Pictures that setUp loads, by index. Empty ones are not loaded.
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

/// Overwrites the texture bound on a unit. Call it from a hook before a draw.
void overwrite(unsigned unit, int width, int height, const Bytes& rgba);

}  // namespace testhost
