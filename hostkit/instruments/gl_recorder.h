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
/// Recorder of GL calls. A program that links velmora-instruments and calls `glRecorder` defines the GL functions that
/// the library imports. Each call passes through the recorder to the real function.

namespace hostkit {

/// A recorded GL call.
struct GlCall {
    /// Name of the function.
    std::string function;
    /// The call as text, for example glUniform2f(advect.Scale, 1080, 1920). Enums appear by name, locations as
    /// PROGRAM.NAME, and objects by their label or by kind and GL name, for example texture4. Uploads and pointers
    /// appear as "source", "data", "null" or the offset.
    std::string text;
    /// Uploaded texture data, buffer data or shader source; empty for other calls.
    std::vector<std::uint8_t> bytes;
};

/// Kind of a GL object.
enum class GlKind { texture, buffer, framebuffer, shader, program };

/// State and hooks of the recorder. It observes every GL function that the library imports. Does not record the GL calls
/// of the hook `inside`.
struct GlRecorder : GlObserver {
    /// While true, every call is appended to `calls`.
    bool recording = false;
    /// Recorded calls in order.
    std::vector<GlCall> calls;

    /// Names of objects in `GlCall::text`, in place of kind and GL name.
    std::map<std::pair<GlKind, GLuint>, std::string> labels;
    /// Labels for the next objects that are created, in order.
    std::deque<std::string> nextLabels;

    /// Names of programs in `GlCall::text`: a program gets the name `second` if the source of an attached shader
    /// contains `first`. The first match counts. A program without a match is "programN".
    std::vector<std::pair<std::string, std::string>> programNames = {
        {"sWaterTexture", "water"}, {"VelocityTexture", "advect"}, {"ImpulseDensity", "impulse"}};

    /// Hook that runs after each call, except after the calls of `inside`.
    std::function<void()> after;

    /// Hook that can make a call fail by returning true. `nth` counts the calls of the function since `reset`, from 1.
    /// On failure, glGen... writes no names, glCreateShader and glCreateProgram return 0, and glGetShaderiv and
    /// glGetProgramiv return the status GL_FALSE.
    std::function<bool(const char* function, int nth)> refuse;

    /// Objects that were created since `reset` and are not deleted, by kind.
    std::map<GlKind, std::set<GLuint>> alive;
    /// Deletions of names that were not alive, for example of a name that was deleted before. One line each.
    std::string strayDeletions;

    /// Records the calls of the function, after clearing earlier calls. Returns their texts, one per line.
    std::string record(const std::function<void()>& functor);
    /// Returns the number of recorded calls of a function.
    int count(const std::string& function) const;
    /// Returns the last recorded value of each uniform, as text, by PROGRAM.NAME.
    std::map<std::string, std::string> uniforms() const;
    /// Restores the state of the program start: no calls, labels, hooks or known objects.
    void reset();
};

/// Returns the recorder of the program, which is also its GL observer. Use it on the thread that makes the GL calls.
GlRecorder& glRecorder();

}  // namespace hostkit
