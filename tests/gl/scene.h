#pragma once

#include <jni.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/gl_recorder.h"
#include "hostkit/jni_environment.h"
#include "hostkit/native.h"

namespace gltest {

enum Action : jint { Down = 0, Up = 1, Move = 2, Cancel = 3 };

constexpr int meshColumns = 5;
constexpr int meshRows = 4;
constexpr int pictureSize = 32;

/// RGBA bytes, rows in the order in which GL takes and gives them.
using Bytes = std::vector<std::uint8_t>;

/// Smooth, so that a small error of a texture coordinate stays a small error of the colour.
Bytes smoothPicture(int phase);

/// The arguments of a frame that are no arrays.
struct FrameArguments {
    int positionCount = meshColumns * meshRows * 3;
    int heightCount = meshColumns * meshRows * 3;
    int indexCount = (meshColumns - 1) * (meshRows - 1) * 6;
    int meshSizeWidth = 24, meshSizeHeight = 36;
    int numDetailsWidth = meshColumns, numDetailsHeight = meshRows;
    float refractiveIndex = 1.5f;
    float alpha = 0.5f, alphaRatio1Scale = 0.75f, alphaRatio2Scale = 9.0f;
    float inkRed = 0.25f, inkGreen = 0.5f, inkBlue = 0.95f;
    float fresnelRatio = 0.5f, specularRatio = 3.0f, exponent = 4.0f;
    bool useSecondBackground = false;
};

/// The line with each word that names an object, as "texture3", replaced.
std::string withObjects(const std::string& line,
                        const std::function<std::string(const std::string&)>& replace);

/// What the recorder's lines call the objects of a scene, made in this order.
/// glGenTextures(1) = texture3 becomes glGenTextures(1) = velocity.
struct ObjectNames {
    std::map<std::string, std::string> labels;

    /// Gives the objects that the lines make, in order, these labels.
    void learn(const std::vector<std::string>& lines, const std::vector<std::string>& made);
    std::vector<std::string> translate(const std::vector<std::string>& lines) const;
    /// The GL name of a label of a kind: number("texture", "inkA").
    GLuint number(const std::string& kind, const std::string& label) const;
};

/// A host with everything within reach of a test: a small mesh, three smooth pictures, a context.
/// The library has one state for all tests of a program, so a scene starts with the gesture ended,
/// the touch at (0, 0) and the settings written.
struct Scene {
    Scene(int width, int height, bool inkEnabled);
    /// The surface is apart from the settings: these may be of any size.
    Scene(int width, int height, bool inkEnabled, int surfaceWidth, int surfaceHeight);
    ~Scene();

    void setting(int width, int height, bool inkEnabled);
    /// onInitUVHBuffer, onInitGPU, the three pictures; learns the names.
    void setUp();
    void initGpu();
    jint load(const Bytes& rgba, int index);
    void touch(int x, int y, jint action, float pressure = 1.0f);
    void draw();
    /// From now on the calls have no effect on any pixel, which makes frames quick.
    void rasteriseNothing() const;
    /// The calls of one frame.
    std::vector<std::string> recordedFrame();

    /// The RGBA bytes of an ink target, "inkA" or "inkB".
    Bytes readTarget(const std::string& label) const;
    void writeTarget(const std::string& label, const Bytes& rgba) const;
    /// The target that the water draw of the last recorded frame samples.
    std::string shownInk() const;

    int width, height;
    int inkWidth = 0, inkHeight = 0;
    bool inkEnabled;
    std::optional<hostkit::GlContext> context;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    hostkit::JniEnvironment jni;
    JNIEnv* env = jni.env();
    jfloatArray positions, heights, matrix;
    jshortArray indices;
    FrameArguments arguments;
    ObjectNames names;
};

/// Calls the functor with the recorder on; returns the lines.
std::vector<std::string> recorded(const std::function<void()>& calls);

/// The arguments of the uniforms set in these lines, by PROGRAM.NAME; of several, the last.
std::map<std::string, std::string> uniformsOf(const std::vector<std::string>& lines);

/// Overwrites the texture bound on a unit: from a hook, just before a draw reads it.
void overwrite(GLenum unit, int width, int height, const Bytes& rgba);

/// A number as the recorder writes it.
std::string text(float number);

}  // namespace gltest
