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
/// the library imports. The recorder passes each call on to the real function.

namespace hostkit {

/// A recorded GL call.
struct GlCall {
    /// Name of the function.
    std::string function;
    /// The call as text, for example glUniform2f(advect.Scale, 1080, 1920). Enums are written by name, and locations as
    /// PROGRAM.NAME. Objects are written as their label, or else as kind and GL name, for example texture4. Uploads and
    /// pointers are written as "source", "data", "null" or the offset.
    std::string text;
    /// Uploaded texture data, buffer data or shader source; empty for other calls.
    std::vector<std::uint8_t> bytes;
};

/// Kind of a GL object.
enum class GlKind { texture, buffer, framebuffer, shader, program };

/// State and hooks of the recorder. It observes every GL function that the library imports. It does not record the GL
/// calls of the hook `inside`.
struct GlRecorder : GlObserver {
    /// While true, every call is appended to `calls`.
    bool recording = false;
    /// Recorded calls in order.
    std::vector<GlCall> calls;

    /// Labels that replace kind and GL name of an object in `GlCall::text`.
    std::map<std::pair<GlKind, GLuint>, std::string> labels;
    /// Labels for the next objects that are created, in order.
    std::deque<std::string> nextLabels;

    /// Names of programs in `GlCall::text`. A program gets the name `second` if the source of an attached shader
    /// contains `first`. The first matching pair is used. A program that matches no pair is called "programN".
    std::vector<std::pair<std::string, std::string>> programNames = {
        {"sWaterTexture", "water"}, {"VelocityTexture", "advect"}, {"ImpulseDensity", "impulse"}};

    /// Hook that runs after each call, except after the calls of `inside`.
    std::function<void()> after;

    /// Hook that can make a call fail by returning true. `nth` is the number of calls of this function since `reset`,
    /// from 1. If a call fails, glGen... writes no names, glCreateShader and glCreateProgram return 0, and
    /// glGetShaderiv and glGetProgramiv return the status GL_FALSE.
    std::function<bool(const char* function, int nth)> refuse;

    /// Objects that were created since `reset` and have not been deleted, by kind.
    std::map<GlKind, std::set<GLuint>> alive;
    /// Deletions of names that were not in `alive`, for example of a name that was deleted before. One deletion per
    /// line.
    std::string strayDeletions;

    /// Clears the recorded calls, then records the calls that `functor` makes. Returns their texts, one per line.
    std::string record(const std::function<void()>& functor);
    /// Returns the number of recorded calls of a function.
    int count(const std::string& function) const;
    /// Returns the last recorded value of each uniform as text. The keys are PROGRAM.NAME.
    std::map<std::string, std::string> uniforms() const;
    /// Resets everything to the state at program start: no calls, labels, hooks or known objects.
    void reset();
};

/// Returns the recorder of the program, which is also its GL observer. Use it on the thread that makes the GL calls.
GlRecorder& glRecorder();

}  // namespace hostkit
