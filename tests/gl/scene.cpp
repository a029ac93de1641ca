#include "scene.h"

#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace gltest {

using hostkit::JniEnvironment;
namespace native = hostkit::native;

Bytes smoothPicture(int phase) {
    Bytes rgba;
    for (int y = 0; y < pictureSize; ++y) {
        for (int x = 0; x < pictureSize; ++x) {
            for (int channel = 0; channel < 4; ++channel) {
                const double wave = std::sin(0.2 * (x + phase) + 1.1 * channel) *
                                    std::cos(0.13 * y * (channel + 1) + phase);
                rgba.push_back(static_cast<std::uint8_t>(std::lround(70 + 50 * wave)));
            }
        }
    }
    return rgba;
}

std::string withObjects(const std::string& line,
                        const std::function<std::string(const std::string&)>& replace) {
    const auto isWord = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
    std::string done;
    for (auto at = line.begin(); at != line.end();) {
        const auto end = isWord(*at) ? std::find_if_not(at, line.end(), isWord) : at + 1;
        const std::string word(at, end);
        const auto digits = word.find_first_of("0123456789");
        const std::string kind = word.substr(0, digits);
        const bool isObject = digits != std::string::npos &&
                              (kind == "texture" || kind == "buffer" || kind == "framebuffer" ||
                               kind == "shader" || kind == "program");
        done += isObject ? replace(word) : word;
        at = end;
    }
    return done;
}

void ObjectNames::learn(const std::vector<std::string>& lines,
                        const std::vector<std::string>& made) {
    auto label = made.begin();
    for (const std::string& line : lines) {
        if (!line.starts_with("glGen") && !line.starts_with("glCreate")) {
            continue;
        }
        const auto result = line.find(" = ");
        ASSERT_NE(label, made.end()) << "not expected: " << line;
        labels[line.substr(result + 3)] = *label++;
    }
    EXPECT_EQ(label, made.end()) << "not made: " << *label;
}

std::vector<std::string> ObjectNames::translate(const std::vector<std::string>& lines) const {
    std::vector<std::string> translated;
    for (const std::string& line : lines) {
        translated.push_back(withObjects(line, [this](const std::string& object) {
            const auto label = labels.find(object);
            return label == labels.end() ? object : label->second;
        }));
    }
    return translated;
}

GLuint ObjectNames::number(const std::string& kind, const std::string& label) const {
    for (const auto& [object, name] : labels) {
        if (name == label && object.starts_with(kind)) {
            return static_cast<GLuint>(std::stoul(object.substr(kind.size())));
        }
    }
    ADD_FAILURE() << "no " << kind << " is called " << label;
    return 0;
}

std::vector<std::string> recorded(const std::function<void()>& calls) {
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    recorder.calls.clear();
    recorder.recording = true;
    calls();
    recorder.recording = false;
    return recorder.lines();
}

std::map<std::string, std::string> uniformsOf(const std::vector<std::string>& lines) {
    std::map<std::string, std::string> values;
    for (const std::string& line : lines) {
        const auto open = line.find('('), comma = line.find(", ");
        if (line.starts_with("glUniform") && comma != std::string::npos) {
            values[line.substr(open + 1, comma - open - 1)] =
                line.substr(comma + 2, line.size() - comma - 3);
        }
    }
    return values;
}

void overwrite(GLenum unit, int width, int height, const Bytes& rgba) {
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glActiveTexture(unit);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glActiveTexture(static_cast<GLenum>(active));
}

std::string text(float number) {
    char digits[64];
    return {digits, std::to_chars(digits, std::end(digits), number).ptr};
}

Scene::Scene(int w, int h, bool ink) : Scene(w, h, ink, w, h) {}

Scene::Scene(int w, int h, bool ink, int surfaceWidth, int surfaceHeight)
    : positions(jni.newFloatArray(meshColumns * meshRows * 3)),
      heights(jni.newFloatArray(meshColumns * meshRows * 3)),
      matrix(jni.newFloatArray(16)),
      indices(jni.newShortArray((meshColumns - 1) * (meshRows - 1) * 6)) {
    context.emplace(surfaceWidth, surfaceHeight);
    touch(0, 0, Cancel);
    touch(0, 0, Down);
    touch(0, 0, Move);
    touch(0, 0, Cancel);
    setting(w, h, ink);
    auto position = JniEnvironment::elements(positions).begin();
    auto index = JniEnvironment::elements(indices).begin();
    for (int column = 0; column < meshColumns; ++column) {
        for (int row = 0; row < meshRows; ++row) {
            *position++ = 24.0f * static_cast<float>(column) / (meshColumns - 1) - 12.0f;
            *position++ = 18.0f - 36.0f * static_cast<float>(row) / (meshRows - 1);
            *position++ = 0.0f;
            if (column == 0 || row == 0) {
                continue;
            }
            const int at = column * meshRows + row;
            for (const int corner :
                 {at - meshRows - 1, at - meshRows, at, at - meshRows - 1, at, at - 1}) {
                *index++ = static_cast<jshort>(corner);
            }
        }
    }
    // Sheared, moved and not symmetric, so that a transposed matrix shows; depth stays inside the
    // clip range.
    const float values[16] = {0.07f, 0.006f, 0.01f, 0, -0.008f, 0.045f, 0.004f, 0,
                              0.02f, 0.03f,  0.1f,  0, 0.05f,   -0.04f, 0.1f,   1};
    std::ranges::copy(values, JniEnvironment::elements(matrix).begin());
}

Scene::~Scene() {
    recorder.reset();
}

void Scene::setting(int w, int h, bool ink) {
    width = w;
    height = h;
    inkEnabled = ink;
    inkWidth = w > h ? 1024 : 512;
    inkHeight = w > h ? 512 : 1024;
    native::onInitSetting(env, nullptr, w, h, ink);
}

void Scene::initGpu() {
    std::vector<std::string> made = {"water.vert", "water.frag", "water"};
    if (inkEnabled) {
        made.insert(made.end(),
                    {"advect.vert", "advect.frag", "advect", "impulse.vert", "impulse.frag",
                     "impulse", "velocity", "velocity", "inkA", "inkA", "inkB", "inkB", "quad"});
    }
    names.learn(recorded([&] { native::onInitGPU(env, nullptr); }), made);
}

void Scene::setUp() {
    names.learn(recorded([&] { native::onInitUVHBuffer(env, nullptr); }),
                {"positions", "heights", "indices"});
    initGpu();
    names.learn(recorded([&] {
                    for (int index = 0; index < 3; ++index) {
                        EXPECT_EQ(load(smoothPicture(index * 5), index), 0);
                    }
                }),
                {"sheen", "background", "second"});
}

jint Scene::load(const Bytes& rgba, int index) {
    Bytes pixels = rgba;
    StandInBitmap bitmap{
        {pictureSize, pictureSize, pictureSize * 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0},
        pixels.data()};
    return native::LoadTextures(env, nullptr, reinterpret_cast<jobject>(&bitmap), index);
}

void Scene::touch(int x, int y, jint action, float pressure) {
    native::onTouch(env, nullptr, x, y, action, pressure);
}

void Scene::draw() {
    const FrameArguments& a = arguments;
    native::onDrawFrame(env, nullptr, positions, heights, indices, a.positionCount, a.heightCount,
                        a.indexCount, matrix, a.meshSizeWidth, a.meshSizeHeight, a.numDetailsWidth,
                        a.numDetailsHeight, a.refractiveIndex, a.alpha, a.alphaRatio1Scale,
                        a.alphaRatio2Scale, a.inkRed, a.inkGreen, a.inkBlue, a.fresnelRatio,
                        a.specularRatio, a.exponent, a.useSecondBackground);
}

void Scene::rasteriseNothing() const {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 0, 0);
}

std::vector<std::string> Scene::recordedFrame() {
    return names.translate(recorded([&] { draw(); }));
}

Bytes Scene::readTarget(const std::string& label) const {
    Bytes rgba(static_cast<std::size_t>(inkWidth) * static_cast<std::size_t>(inkHeight) * 4);
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    glBindFramebuffer(GL_FRAMEBUFFER, names.number("framebuffer", label));
    glReadPixels(0, 0, inkWidth, inkHeight, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(bound));
    return rgba;
}

void Scene::writeTarget(const std::string& label, const Bytes& rgba) const {
    glBindTexture(GL_TEXTURE_2D, names.number("texture", label));
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, inkWidth, inkHeight, GL_RGBA, GL_UNSIGNED_BYTE,
                    rgba.data());
    glBindTexture(GL_TEXTURE_2D, 0);
}

std::string Scene::shownInk() const {
    const std::string bind = "glBindTexture(GL_TEXTURE_2D, ink";
    const std::vector<std::string> lines = names.translate(recorder.lines());
    // The water draw comes after all ink passes.
    const auto last = std::find_if(lines.rbegin(), lines.rend(),
                                   [&](const std::string& line) { return line.starts_with(bind); });
    EXPECT_NE(last, lines.rend()) << "no ink is shown";
    return last == lines.rend() ? "inkA" : "ink" + last->substr(bind.size(), 1);
}

}  // namespace gltest
