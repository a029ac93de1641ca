#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hostkit/gl_observer.h"

/// @file
/// Recorder of GL calls. A program that links velmora-instruments and calls `glRecorder` replaces the GL functions that
/// the library imports. The recorder forwards each call to the real function.

namespace hostkit {

/// A recorded GL call.
struct GlCall {
    /// Name of the function.
    std::string function;
    /// The call as text, for example glUniform2f(advect.Scale, 1080, 1920). Enums are written by name, and locations as
    /// PROGRAM.NAME. An object is written as its label or, if it has none, as kind and GL name, for example texture4.
    /// A shader source is written as "source", an upload as "data" or, if its pointer is null, "null". An offset into a
    /// buffer is written as a number.
    std::string text;
    /// Data that the call uploads: texture data, buffer data or shader source. Empty for other calls.
    std::vector<std::uint8_t> bytes;
};

/// Kind of a GL object.
enum class GlKind { texture, buffer, framebuffer, shader, program };

/// State and hooks of the recorder. It observes every GL function that the library imports. GL calls that the hook
/// `inside` makes are not recorded.
struct GlRecorder : GlObserver {
    /// True while calls are appended to `calls`.
    bool recording = false;
    /// Recorded calls in order.
    std::vector<GlCall> calls;

    /// Labels of objects. In `GlCall::text`, a label replaces the object's kind and GL name.
    std::map<std::pair<GlKind, GLuint>, std::string> labels;
    /// Labels for objects that will be created. The next object that is created gets the first label.
    std::deque<std::string> nextLabels;

    /// Names of programs in `GlCall::text`. If the source of one of a program's shaders contains the `first` string of
    /// a pair, the program has the `second` string as its name. The first matching pair counts. A program without a
    /// match is called "programN".
    std::vector<std::pair<std::string, std::string>> programNames = {
        {"sWaterTexture", "water"}, {"VelocityTexture", "advect"}, {"ImpulseDensity", "impulse"}};

    /// Hook that runs after each call. It does not run after calls that the hook `inside` makes.
    std::function<void()> after;

    /// Hook that makes a call fail if it returns true. `nth` is the number of the call among all calls of the function
    /// since `reset`, starting at 1. A failing glGen... writes no GL names, a failing glCreateShader or glCreateProgram
    /// returns 0, and a failing glGetShaderiv or glGetProgramiv returns the status GL_FALSE.
    std::function<bool(const char* function, int nth)> refuse;

    /// Objects that were created since `reset` and have not been deleted, by kind.
    std::map<GlKind, std::set<GLuint>> alive;
    /// Errors of the library, one per line: deletions of GL names that are not in `alive`, for example of objects that
    /// were deleted before.
    std::string strayDeletions;

    /// Clears the recorded calls and calls `functor`. Returns the GL calls that `functor` made as text, one per line.
    std::string record(const std::function<void()>& functor);
    /// Returns the number of recorded calls of a function.
    int count(const std::string& function) const;
    /// Returns the last recorded value of each uniform as text. A key has the form PROGRAM.NAME.
    std::map<std::string, std::string> uniforms() const;
    /// Restores the state at program start: no calls, labels, hooks or known objects.
    void reset();
};

/// Returns the program's recorder, which is also its GL observer. Use it on the thread that makes the GL calls.
GlRecorder& glRecorder();

}  // namespace hostkit
