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

/// RGBA bytes of an image. The first row is the bottom row, as in GL.
using Bytes = std::vector<std::uint8_t>;

/// Arguments of a frame that describe the mesh: numbers of vertices, size in mesh units, column-major matrix.
struct Mesh {
    int columns, rows, width, height;
    std::array<float, 16> matrix;
};
/// A mesh of four vertices that covers the screen.
constexpr Mesh quadMesh = {2, 2, 2, 2, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
/// A mesh whose matrix shears, moves and is not symmetric, so that a transposed matrix would change the image. The
/// depth of all vertices is in the clip range.
constexpr Mesh shearedMesh = {5,
                              4,
                              24,
                              36,
                              {0.07f, 0.006f, 0.01f, 0, -0.008f, 0.045f, 0.004f, 0, 0.02f, 0.03f,
                               0.1f, 0, 0.05f, -0.04f, 0.1f, 1}};

constexpr int imageSize = 32;
/// Returns a smooth image. In a smooth image, a small error of a texture coordinate causes only a small error of the
/// colour.
Bytes smoothImage(int phase);

/// Arguments of a frame that are not arrays.
struct FrameArguments {
    int indexCount;
    float refractiveIndex = 1.5f, alpha = 0.5f, alphaRatio1Scale = 0.75f;
    float inkRed = 0.25f, inkGreen = 0.5f, inkBlue = 0.95f;
    float fresnelRatio = 0.5f, specularRatio = 3.0f, exponent = 4.0f;
    bool useSecondBackground = false;
};

/// A host for a freshly loaded library. Its members are public, so that tests can change them. The constructor creates
/// a GL context and a flat mesh, but makes no native call.
struct TestHost {
    TestHost(int screenWidth, int screenHeight, const Mesh& chosenMesh = shearedMesh);
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    /// Makes the set-up calls of a host on a new context: settings, buffers, GPU resources, images.
    void setUp(bool ink = true);

    void newContext();
    void setting(bool ink = true);
    void setting(int screenWidth, int screenHeight, bool ink);
    /// These two functions make a native call and return the recorded GL calls. In the returned text, labels replace
    /// the GL names of new objects.
    std::string initBuffers();
    std::string initGpu();
    /// Loads a square image into the texture slot number `index` of the library.
    jint load(const Bytes& rgba, int index);
    jint load(StandInBitmap& bitmap, int index);

    void touch(int x, int y, jint action, float pressure = 1.0f);
    void clear();
    jint shownInk();
    void draw(int frames = 1);
    /// Draws a frame and returns its GL calls.
    std::string recordedFrame();
    /// Draws a frame and returns the last value of each uniform. The keys are PROGRAM.NAME, for example
    /// water.intensity.
    std::map<std::string, std::string> uniformsOfFrame();

    /// Limits drawing to the lower left `side` x `side` pixels of each target, which makes frames fast.
    void rasterise(int side);

    const fuzz::NativeMethods& native() const { return loaded.methods; }

    int width, height;
    bool inkEnabled = false;
    Mesh mesh;
    /// Images that setUp loads. The index is the texture slot. An empty image is not loaded.
    std::array<Bytes, 3> images = {smoothImage(0), smoothImage(5), smoothImage(10)};
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

/// Overwrites the texture that is bound on a texture unit. Call this function in a GL hook before a draw call.
void overwrite(unsigned unit, int width, int height, const Bytes& rgba);

}  // namespace testhost
