#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// A program that links velmora-instruments and names the recorder defines the GL functions that the library
/// imports; each call goes through the recorder and on to the real function. Without recording or
/// hooks nothing is kept.
namespace hostkit {

struct GlCall {
    /// The function's name.
    std::string function;
    /// The call as a line: glUniform2f(advect.Scale, 1080, 1920). Enums print by name; locations as
    /// PROGRAM.NAME; objects as their kind and GL name ("texture4"), or their label; sources, data
    /// and pointers as "source", "data", "null" or the offset.
    std::string text;
    /// What the call uploads: texture or buffer data, or the shader source; empty otherwise.
    std::vector<std::uint8_t> bytes;
};

enum class GlKind { texture, buffer, framebuffer, shader, program };

struct GlRecorder {
    /// While true, every call is appended to `calls`.
    bool recording = false;
    std::vector<GlCall> calls;

    /// Names for objects in the lines, instead of the kind and the number.
    std::map<std::pair<GlKind, GLuint>, std::string> labels;
    /// The labels that the next objects made get, in order.
    std::deque<std::string> nextLabels;

    /// A linked program whose sources contain `first` is called `second` in the lines. Matched in
    /// order when a shader is attached; a program without a match is "programN".
    std::vector<std::pair<std::string, std::string>> programNames = {
        {"sWaterTexture", "water"}, {"VelocityTexture", "advect"}, {"ImpulseDensity", "impulse"}};

    /// Runs inside each call, before it is forwarded. A GL call made from here is neither recorded
    /// nor hooked.
    std::function<void(const char* function)> inside;
    /// Runs when each call has come back; not after calls made from `inside`.
    std::function<void()> after;

    /// Asked before a call that can fail, with the number of such calls since `reset`, from 1. True
    /// makes it fail: glGen... writes no name, glCreateShader and glCreateProgram return 0,
    /// glGetShaderiv and glGetProgramiv read the status GL_FALSE.
    std::function<bool(const char* function, int nth)> refuse;

    /// Sees every glTexImage2D that carries data: `bytes` is the RGBA8 image, valid during the call.
    std::function<void(int width, int height, std::span<const std::uint8_t> bytes)> textureUpload;

    /// Objects made and not deleted through the recorder since `reset`, by kind.
    std::map<GlKind, std::set<GLuint>> alive;
    /// Deletions through the recorder of what was not alive, a name deleted twice for instance; a line
    /// for each.
    std::string strayDeletions;

    /// Keeps the calls that the functor makes, and those alone; returns their lines, each with its
    /// end of line.
    std::string record(const std::function<void()>& functor);
    /// How many recorded calls are of this function.
    int count(const std::string& function) const;
    /// What the recorded calls set each uniform to, by PROGRAM.NAME: the arguments of the last one.
    std::map<std::string, std::string> uniforms() const;
    /// Back to the state at program start: no calls, labels, hooks or known objects.
    void reset();
};

/// The recorder of the program; used by the thread that makes the GL calls.
GlRecorder& glRecorder();

}  // namespace hostkit
