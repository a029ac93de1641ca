#include "hostkit/instruments/gl_recorder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <span>

#include "hostkit/next_function.h"

namespace hostkit {

namespace {

struct EnumName {
    GLenum value;
    const char* name;
};

#define HOSTKIT_ENUM(name) \
    EnumName {             \
        name, #name        \
    }
constexpr EnumName enumNames[] = {
    HOSTKIT_ENUM(GL_TEXTURE_2D),
    HOSTKIT_ENUM(GL_TEXTURE_MIN_FILTER),
    HOSTKIT_ENUM(GL_TEXTURE_MAG_FILTER),
    HOSTKIT_ENUM(GL_TEXTURE_WRAP_S),
    HOSTKIT_ENUM(GL_TEXTURE_WRAP_T),
    HOSTKIT_ENUM(GL_LINEAR),
    HOSTKIT_ENUM(GL_NEAREST),
    HOSTKIT_ENUM(GL_CLAMP_TO_EDGE),
    HOSTKIT_ENUM(GL_REPEAT),
    HOSTKIT_ENUM(GL_RGBA),
    HOSTKIT_ENUM(GL_UNSIGNED_BYTE),
    HOSTKIT_ENUM(GL_SHORT),
    HOSTKIT_ENUM(GL_UNSIGNED_SHORT),
    HOSTKIT_ENUM(GL_FLOAT),
    HOSTKIT_ENUM(GL_ARRAY_BUFFER),
    HOSTKIT_ENUM(GL_ELEMENT_ARRAY_BUFFER),
    HOSTKIT_ENUM(GL_STATIC_DRAW),
    HOSTKIT_ENUM(GL_DYNAMIC_DRAW),
    HOSTKIT_ENUM(GL_STREAM_DRAW),
    HOSTKIT_ENUM(GL_FRAMEBUFFER),
    HOSTKIT_ENUM(GL_COLOR_ATTACHMENT0),
    HOSTKIT_ENUM(GL_COLOR_BUFFER_BIT),
    HOSTKIT_ENUM(GL_BLEND),
    HOSTKIT_ENUM(GL_DEPTH_TEST),
    HOSTKIT_ENUM(GL_SRC_ALPHA),
    HOSTKIT_ENUM(GL_ONE_MINUS_SRC_ALPHA),
    HOSTKIT_ENUM(GL_VERTEX_SHADER),
    HOSTKIT_ENUM(GL_FRAGMENT_SHADER),
    HOSTKIT_ENUM(GL_COMPILE_STATUS),
    HOSTKIT_ENUM(GL_LINK_STATUS),
    HOSTKIT_ENUM(GL_TRIANGLES),
    HOSTKIT_ENUM(GL_TRIANGLE_STRIP),
};
#undef HOSTKIT_ENUM

/// State of the current context that the recorder needs to describe calls. The recorder updates it even while recording
/// is off.
struct Knowledge {
    std::map<std::pair<GLuint, GLint>, std::string> uniforms;
    std::map<std::pair<GLuint, GLuint>, std::string> attributes;
    std::map<GLuint, std::string> shaderSources;
    std::map<GLuint, std::string> programs;
    /// Number of calls so far, by function name. Contains only the functions that the hook `refuse` can make fail.
    std::map<std::string, int> failable;
    /// Program in use.
    GLuint program = 0;
    /// True while the hook `inside` runs.
    bool insideHook = false;
};

Knowledge& knowledge() {
    static Knowledge known;
    return known;
}

// Wrappers of GL arguments. The type of the wrapper selects how the argument is written as text.
struct Enum {
    GLenum value;
};
struct Flag {
    GLboolean value;
};
struct Object {
    GlKind kind;
    GLuint name;
};
struct Objects {
    GlKind kind;
    std::span<const GLuint> names;
};
struct Uniform {
    GLint location;
};
struct Attribute {
    GLuint index;
};
struct Quoted {
    const char* text;
};
struct Bytes {
    const void* data;
};
template <class Number>
struct Values {
    std::span<const Number> values;
};

std::string programName(GLuint program) {
    const auto found = knowledge().programs.find(program);
    return found == knowledge().programs.end() ? "program" + std::to_string(program)
                                               : found->second;
}

template <class Number>
std::string show(Number number) requires(std::integral<Number> || std::floating_point<Number>) {
    char digits[64];
    return {digits, std::to_chars(digits, std::end(digits), number).ptr};
}

std::string show(Enum shown) {
    const auto found = std::ranges::find(enumNames, shown.value, &EnumName::value);
    return found == std::end(enumNames) ? show(shown.value) : found->name;
}

std::string show(Flag shown) {
    return shown.value ? "GL_TRUE" : "GL_FALSE";
}

std::string show(Object shown) {
    constexpr std::array<const char*, 4> kinds = {"texture", "buffer", "framebuffer", "shader"};
    const auto& labels = glRecorder().labels;
    if (const auto label = labels.find({shown.kind, shown.name}); label != labels.end()) {
        return label->second;
    }
    if (shown.name == 0) {
        return "0";
    }
    return shown.kind == GlKind::program
               ? programName(shown.name)
               : kinds[static_cast<std::size_t>(shown.kind)] + show(shown.name);
}

std::string show(Objects shown) {
    std::string text;
    for (const GLuint name : shown.names) {
        text.append(text.empty() ? "" : ", ").append(show(Object{shown.kind, name}));
    }
    return text;
}

std::string show(Uniform shown) {
    const Knowledge& known = knowledge();
    const auto found = known.uniforms.find({known.program, shown.location});
    return found == known.uniforms.end() ? show(shown.location)
                                         : programName(known.program) + "." + found->second;
}

std::string show(Attribute shown) {
    const Knowledge& known = knowledge();
    const auto found = known.attributes.find({known.program, shown.index});
    return found == known.attributes.end() ? show(shown.index)
                                           : programName(known.program) + "." + found->second;
}

std::string show(Quoted shown) {
    return '"' + std::string(shown.text) + '"';
}

std::string show(Bytes shown) {
    return shown.data ? "data" : "null";
}

template <class Number>
std::string show(Values<Number> shown) {
    std::string text = "[";
    for (const Number value : shown.values) {
        text.append(text.size() == 1 ? "" : ", ").append(show(value));
    }
    return text + "]";
}

/// Runs the hook `inside`. Returns false if the hook itself made this call; the caller then only forwards the call.
bool enter(const char* function) {
    Knowledge& known = knowledge();
    if (known.insideHook) {
        return false;
    }
    if (glRecorder().inside) {
        known.insideHook = true;
        glRecorder().inside(function);
        known.insideHook = false;
    }
    return true;
}

/// Runs the hook `after` in its destructor. Each forwarding function declares one such object, so the hook runs at the
/// end of the function.
struct AfterHook {
    AfterHook() = default;
    AfterHook(const AfterHook&) = delete;
    AfterHook& operator=(const AfterHook&) = delete;
    ~AfterHook() {
        if (glRecorder().after && !knowledge().insideHook) {
            glRecorder().after();
        }
    }
};

/// Counts a call of this function. Returns true if the hook `refuse` makes the call fail.
bool refused(const char* function) {
    const auto& refuse = glRecorder().refuse;
    return refuse && refuse(function, ++knowledge().failable[function]);
}

template <class... Shown>
std::string line(const char* function, const Shown&... shown) {
    std::string text;
    ((text.append(text.empty() ? "" : ", ").append(show(shown))), ...);
    return std::string(function) + "(" + text + ")";
}

void record(const char* function, std::string text, const void* data = nullptr,
            std::size_t size = 0) {
    const auto* const first = static_cast<const std::uint8_t*>(data);
    glRecorder().calls.push_back(
        {function, std::move(text),
         data ? std::vector(first, first + size) : std::vector<std::uint8_t>{}});
}

std::size_t sizeOf(GLsizei count) {
    return static_cast<std::size_t>(std::max(count, 0));
}

/// Registers a new object in `alive`. Assigns the next label of `nextLabels` to the object, if a label is left.
void addAlive(GlKind kind, GLuint name) {
    GlRecorder& recorder = glRecorder();
    recorder.alive[kind].insert(name);
    if (!recorder.nextLabels.empty()) {
        recorder.labels[{kind, name}] = recorder.nextLabels.front();
        recorder.nextLabels.pop_front();
    }
}

/// Removes a deleted object from `alive`. Reports GL names that are not in `alive`, except 0, which GL ignores.
void removeAlive(const char* function, GlKind kind, GLuint name) {
    if (glRecorder().alive[kind].erase(name) == 0 && name != 0) {
        glRecorder().strayDeletions += line(function, Object{kind, name}) + "\n";
    }
}

template <class Real>
void generate(const char* function, GlKind kind, Real* real, GLsizei count, GLuint* names) {
    if (!enter(function)) {
        return real(count, names);
    }
    const std::span made(names, sizeOf(count));
    if (!refused(function)) {
        real(count, names);
        for (const GLuint name : made) {
            addAlive(kind, name);
        }
    }
    if (glRecorder().recording) {
        record(function, line(function, count) + " = " + show(Objects{kind, made}));
    }
}

template <class Real>
void erase(const char* function, GlKind kind, Real* real, GLsizei count, const GLuint* names) {
    if (enter(function)) {
        const std::span gone(names, sizeOf(count));
        if (glRecorder().recording) {
            record(function, line(function, count, Objects{kind, gone}));
        }
        for (const GLuint name : gone) {
            removeAlive(function, kind, name);
        }
    }
    real(count, names);
}

GLuint created(const char* function, GlKind kind, const std::string& text, GLuint name) {
    if (name != 0) {
        addAlive(kind, name);
    }
    if (glRecorder().recording) {
        record(function, text + " = " + show(Object{kind, name}));
    }
    return name;
}

/// Completes a status query: sets the status to GL_FALSE if the hook `refuse` returns true, then records the call.
void answerStatus(const char* function, Object object, GLenum name, GLint* value) {
    const bool status = name == GL_COMPILE_STATUS || name == GL_LINK_STATUS;
    if (status && refused(function)) {
        *value = GL_FALSE;
    }
    if (glRecorder().recording) {
        record(function, line(function, object, Enum{name}) + " = " + show(*value));
    }
}

std::string joined(GLsizei count, const GLchar* const* texts, const GLint* lengths) {
    std::string source;
    for (std::size_t part = 0; part < sizeOf(count); ++part) {
        const bool counted = lengths && lengths[part] >= 0;
        source.append(texts[part], counted ? sizeOf(lengths[part]) : std::strlen(texts[part]));
    }
    return source;
}

void nameAttribute(GLuint program, GLuint index, const GLchar* name) {
    knowledge().attributes[{program, index}] = name;
}

void nameProgram(GLuint program, GLuint shader) {
    for (const auto& [mark, name] : glRecorder().programNames) {
        if (knowledge().shaderSources[shader].find(mark) != std::string::npos) {
            knowledge().programs[program] = name;
            return;
        }
    }
}

}  // namespace

GlRecorder& glRecorder() {
    static GlRecorder recorder;
    return recorder;
}

GlObserver& sharedGlObserver() {
    return glRecorder();
}

std::string GlRecorder::record(const std::function<void()>& functor) {
    calls.clear();
    recording = true;
    functor();
    recording = false;
    std::string lines;
    for (const GlCall& call : calls) {
        lines += call.text + "\n";
    }
    return lines;
}

int GlRecorder::count(const std::string& function) const {
    return static_cast<int>(std::ranges::count(calls, function, &GlCall::function));
}

std::map<std::string, std::string> GlRecorder::uniforms() const {
    std::map<std::string, std::string> values;
    for (const GlCall& call : calls) {
        const std::string& text = call.text;
        if (const auto comma = text.find(", "); text.starts_with("glUniform")) {
            const auto name = text.find('(') + 1;
            values[text.substr(name, comma - name)] =
                text.substr(comma + 2, text.size() - comma - 3);
        }
    }
    return values;
}

void GlRecorder::reset() {
    *this = {};
    knowledge() = {};
}

}  // namespace hostkit

using namespace hostkit;  // NOLINT(google-build-using-namespace): GL functions are global

// The linker binds the library's GL calls to the functions below instead of those of the GL library.
#pragma GCC visibility push(default)

#define HOSTKIT_REAL(function)                                             \
    static auto* const real = nextFunction<decltype(function)>(#function); \
    const AfterHook afterHook

/// Defines the forwarding function of a GL function that returns nothing. The arguments are: the function's name and
/// parameters, the arguments to forward, a statement that updates the recorder's state, and the arguments to record.
#define HOSTKIT_LEARNING_FORWARD(function, parameters, arguments, learn, ...) \
    void GL_APIENTRY function parameters {                                    \
        HOSTKIT_REAL(function);                                               \
        if (enter(#function) && glRecorder().recording) {                     \
            record(#function, line(#function __VA_OPT__(, ) __VA_ARGS__));    \
        }                                                                     \
        real arguments;                                                       \
        learn;                                                                \
    }
#define HOSTKIT_FORWARD(function, parameters, arguments, ...) \
    HOSTKIT_LEARNING_FORWARD(function, parameters, arguments, static_cast<void>(0), __VA_ARGS__)

// clang-format off
HOSTKIT_FORWARD(glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height),
            x, y, width, height)
HOSTKIT_FORWARD(glClear, (GLbitfield mask), (mask), Enum{mask})
HOSTKIT_FORWARD(glClearColor, (GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha), (red, green, blue, alpha),
            red, green, blue, alpha)
HOSTKIT_FORWARD(glEnable, (GLenum cap), (cap), Enum{cap})
HOSTKIT_FORWARD(glDisable, (GLenum cap), (cap), Enum{cap})
HOSTKIT_FORWARD(glBlendFunc, (GLenum sfactor, GLenum dfactor), (sfactor, dfactor), Enum{sfactor}, Enum{dfactor})

HOSTKIT_FORWARD(glBindTexture, (GLenum target, GLuint texture), (target, texture),
            Enum{target}, Object{GlKind::texture, texture})
HOSTKIT_FORWARD(glBindBuffer, (GLenum target, GLuint buffer), (target, buffer),
            Enum{target}, Object{GlKind::buffer, buffer})
HOSTKIT_FORWARD(glBindFramebuffer, (GLenum target, GLuint framebuffer), (target, framebuffer),
            Enum{target}, Object{GlKind::framebuffer, framebuffer})
HOSTKIT_FORWARD(glFramebufferTexture2D,
            (GLenum target, GLenum attachment, GLenum textarget, GLuint texture, GLint level),
            (target, attachment, textarget, texture, level),
            Enum{target}, Enum{attachment}, Enum{textarget}, Object{GlKind::texture, texture}, level)
HOSTKIT_FORWARD(glTexParameteri, (GLenum target, GLenum pname, GLint param), (target, pname, param),
            Enum{target}, Enum{pname}, Enum{static_cast<GLenum>(param)})
HOSTKIT_FORWARD(glTexParameterf, (GLenum target, GLenum pname, GLfloat param), (target, pname, param),
            Enum{target}, Enum{pname}, Enum{static_cast<GLenum>(param)})

HOSTKIT_LEARNING_FORWARD(glAttachShader, (GLuint program, GLuint shader),
            (program, shader), nameProgram(program, shader),
            Object{GlKind::program, program}, Object{GlKind::shader, shader})
HOSTKIT_LEARNING_FORWARD(glBindAttribLocation, (GLuint program, GLuint index, const GLchar* name),
            (program, index, name), nameAttribute(program, index, name),
            Object{GlKind::program, program}, index, Quoted{name})
HOSTKIT_FORWARD(glCompileShader, (GLuint shader), (shader), Object{GlKind::shader, shader})
HOSTKIT_FORWARD(glLinkProgram, (GLuint program), (program), Object{GlKind::program, program})
HOSTKIT_LEARNING_FORWARD(glUseProgram, (GLuint program), (program), knowledge().program = program,
            Object{GlKind::program, program})
HOSTKIT_LEARNING_FORWARD(glDeleteShader, (GLuint shader),
            (shader), removeAlive("glDeleteShader", GlKind::shader, shader),
            Object{GlKind::shader, shader})
HOSTKIT_LEARNING_FORWARD(glDeleteProgram, (GLuint program),
            (program), removeAlive("glDeleteProgram", GlKind::program, program),
            Object{GlKind::program, program})

HOSTKIT_FORWARD(glEnableVertexAttribArray, (GLuint index), (index), Attribute{index})
HOSTKIT_FORWARD(glDisableVertexAttribArray, (GLuint index), (index), Attribute{index})
HOSTKIT_FORWARD(glVertexAttribPointer,
            (GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride, const void* pointer),
            (index, size, type, normalized, stride, pointer),
            Attribute{index}, size, Enum{type}, Flag{normalized}, stride, reinterpret_cast<std::uintptr_t>(pointer))
HOSTKIT_FORWARD(glDrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count),
            Enum{mode}, first, count)
HOSTKIT_FORWARD(glDrawElements, (GLenum mode, GLsizei count, GLenum type, const void* indices),
            (mode, count, type, indices),
            Enum{mode}, count, Enum{type}, reinterpret_cast<std::uintptr_t>(indices))

HOSTKIT_FORWARD(glUniform1f, (GLint location, GLfloat v0), (location, v0), Uniform{location}, v0)
HOSTKIT_FORWARD(glUniform2f, (GLint location, GLfloat v0, GLfloat v1), (location, v0, v1), Uniform{location}, v0, v1)
HOSTKIT_FORWARD(glUniform3f, (GLint location, GLfloat v0, GLfloat v1, GLfloat v2), (location, v0, v1, v2),
            Uniform{location}, v0, v1, v2)
HOSTKIT_FORWARD(glUniform4f, (GLint location, GLfloat v0, GLfloat v1, GLfloat v2, GLfloat v3),
            (location, v0, v1, v2, v3), Uniform{location}, v0, v1, v2, v3)
HOSTKIT_FORWARD(glUniform1i, (GLint location, GLint v0), (location, v0), Uniform{location}, v0)
HOSTKIT_FORWARD(glUniform2i, (GLint location, GLint v0, GLint v1), (location, v0, v1), Uniform{location}, v0, v1)

#define HOSTKIT_FORWARD_VECTOR(function, Number, size)                                                     \
    HOSTKIT_FORWARD(function, (GLint location, GLsizei count, const Number* value), (location, count, value), \
                Uniform{location}, count, Values<Number>{{value, sizeOf(count) * (size)}})
HOSTKIT_FORWARD_VECTOR(glUniform1fv, GLfloat, 1)
HOSTKIT_FORWARD_VECTOR(glUniform2fv, GLfloat, 2)
HOSTKIT_FORWARD_VECTOR(glUniform3fv, GLfloat, 3)
HOSTKIT_FORWARD_VECTOR(glUniform4fv, GLfloat, 4)
HOSTKIT_FORWARD_VECTOR(glUniform1iv, GLint, 1)
HOSTKIT_FORWARD(glUniformMatrix4fv,
            (GLint location, GLsizei count, GLboolean transpose, const GLfloat* value),
            (location, count, transpose, value),
            Uniform{location}, count, Flag{transpose}, Values<GLfloat>{{value, sizeOf(count) * 16}})

#define HOSTKIT_FORWARD_NAMES(ending, names, kind)                           \
    void GL_APIENTRY glGen##ending(GLsizei n, GLuint* names) {           \
        HOSTKIT_REAL(glGen##ending);                                     \
        generate("glGen" #ending, kind, real, n, names);                 \
    }                                                                    \
    void GL_APIENTRY glDelete##ending(GLsizei n, const GLuint* names) {  \
        HOSTKIT_REAL(glDelete##ending);                                  \
        erase("glDelete" #ending, kind, real, n, names);                 \
    }
HOSTKIT_FORWARD_NAMES(Textures, textures, GlKind::texture)
HOSTKIT_FORWARD_NAMES(Buffers, buffers, GlKind::buffer)
HOSTKIT_FORWARD_NAMES(Framebuffers, framebuffers, GlKind::framebuffer)
// clang-format on

void GL_APIENTRY glActiveTexture(GLenum texture) {
    HOSTKIT_REAL(glActiveTexture);
    if (enter("glActiveTexture") && glRecorder().recording) {
        record("glActiveTexture", "glActiveTexture(GL_TEXTURE" + show(texture - GL_TEXTURE0) + ")");
    }
    real(texture);
}

void GL_APIENTRY glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width,
                              GLsizei height, GLint border, GLenum format, GLenum type,
                              const void* pixels) {
    HOSTKIT_REAL(glTexImage2D);
    if (enter("glTexImage2D")) {
        const std::size_t size = sizeOf(width) * sizeOf(height) * 4;
        if (glRecorder().recording) {
            record(
                "glTexImage2D",
                line("glTexImage2D", Enum{target}, level, Enum{static_cast<GLenum>(internalformat)},
                     width, height, border, Enum{format}, Enum{type}, Bytes{pixels}),
                pixels, size);
        }
        if (pixels && glRecorder().textureUpload) {
            glRecorder().textureUpload(width, height,
                                       {static_cast<const std::uint8_t*>(pixels), size});
        }
    }
    real(target, level, internalformat, width, height, border, format, type, pixels);
}

void GL_APIENTRY glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    HOSTKIT_REAL(glBufferData);
    if (enter("glBufferData") && glRecorder().recording) {
        record("glBufferData", line("glBufferData", Enum{target}, size, Bytes{data}, Enum{usage}),
               data, static_cast<std::size_t>(std::max(size, GLsizeiptr{0})));
    }
    real(target, size, data, usage);
}

GLuint GL_APIENTRY glCreateShader(GLenum type) {
    HOSTKIT_REAL(glCreateShader);
    if (!enter("glCreateShader")) {
        return real(type);
    }
    return created("glCreateShader", GlKind::shader, line("glCreateShader", Enum{type}),
                   refused("glCreateShader") ? 0 : real(type));
}

GLuint GL_APIENTRY glCreateProgram() {
    HOSTKIT_REAL(glCreateProgram);
    if (!enter("glCreateProgram")) {
        return real();
    }
    const GLuint program = refused("glCreateProgram") ? 0 : real();
    knowledge().programs.erase(program);
    return created("glCreateProgram", GlKind::program, "glCreateProgram()", program);
}

void GL_APIENTRY glShaderSource(GLuint shader, GLsizei count, const GLchar* const* string,
                                const GLint* length) {
    HOSTKIT_REAL(glShaderSource);
    if (enter("glShaderSource")) {
        std::string& source = knowledge().shaderSources[shader];
        source = joined(count, string, length);
        if (glRecorder().recording) {
            record("glShaderSource",
                   "glShaderSource(" + show(Object{GlKind::shader, shader}) + ", source)",
                   source.data(), source.size());
        }
    }
    real(shader, count, string, length);
}

void GL_APIENTRY glGetShaderiv(GLuint shader, GLenum pname, GLint* params) {
    HOSTKIT_REAL(glGetShaderiv);
    const bool seen = enter("glGetShaderiv");
    real(shader, pname, params);
    if (seen) {
        answerStatus("glGetShaderiv", {GlKind::shader, shader}, pname, params);
    }
}

void GL_APIENTRY glGetProgramiv(GLuint program, GLenum pname, GLint* params) {
    HOSTKIT_REAL(glGetProgramiv);
    const bool seen = enter("glGetProgramiv");
    real(program, pname, params);
    if (seen) {
        answerStatus("glGetProgramiv", {GlKind::program, program}, pname, params);
    }
}

GLint GL_APIENTRY glGetUniformLocation(GLuint program, const GLchar* name) {
    HOSTKIT_REAL(glGetUniformLocation);
    const bool seen = enter("glGetUniformLocation");
    const GLint location = real(program, name);
    if (seen) {
        // All uniforms that the shader compiler has removed have location -1, so they share one entry. The entry holds
        // the name of the uniform that was looked up last.
        knowledge().uniforms[{program, location}] = name;
    }
    if (seen && glRecorder().recording) {
        record("glGetUniformLocation",
               line("glGetUniformLocation", Object{GlKind::program, program}, Quoted{name}));
    }
    return location;
}

GLint GL_APIENTRY glGetAttribLocation(GLuint program, const GLchar* name) {
    HOSTKIT_REAL(glGetAttribLocation);
    const bool seen = enter("glGetAttribLocation");
    const GLint location = real(program, name);
    if (seen && location >= 0) {
        nameAttribute(program, static_cast<GLuint>(location), name);
    }
    if (seen && glRecorder().recording) {
        record("glGetAttribLocation",
               line("glGetAttribLocation", Object{GlKind::program, program}, Quoted{name}));
    }
    return location;
}

#pragma GCC visibility pop
