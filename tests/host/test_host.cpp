#include "tests/host/test_host.h"

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace testhost {

Bytes smoothImage(int phase) {
    Bytes rgba;
    for (int at = 0; at < imageSize * imageSize * 4; ++at) {
        const int channel = at % 4, x = at / 4 % imageSize, y = at / 4 / imageSize;
        const double wave = std::sin(0.2 * (x + phase) + 1.1 * channel) *
                            std::cos(0.13 * y * (channel + 1) + phase);
        rgba.push_back(static_cast<std::uint8_t>(std::lround(70 + 50 * wave)));
    }
    return rgba;
}

void overwrite(unsigned unit, int width, int height, const Bytes& rgba) {
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glActiveTexture(unit);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glActiveTexture(static_cast<GLenum>(active));
}

TestHost::TestHost(int screenWidth, int screenHeight, const Mesh& chosenMesh)
    : width(screenWidth),
      height(screenHeight),
      mesh(chosenMesh),
      positions(jni.newFloatArray(static_cast<std::size_t>(mesh.columns * mesh.rows * 3))),
      heights(jni.newFloatArray(static_cast<std::size_t>(mesh.columns * mesh.rows * 3))),
      matrix(jni.newFloatArray(16)),
      indices(jni.newShortArray(static_cast<std::size_t>(arguments.indexCount))) {
    newContext();
    const auto part = [](int at, int count) {
        return static_cast<float>(at) / static_cast<float>(count - 1) - 0.5f;
    };
    auto position = JniEnvironment::elements(positions).begin();
    auto index = JniEnvironment::elements(indices).begin();
    for (int at = 0; at < mesh.columns * mesh.rows; ++at) {
        const int column = at / mesh.rows, row = at % mesh.rows;
        position[0] = static_cast<float>(mesh.width) * part(column, mesh.columns);
        position[1] = -static_cast<float>(mesh.height) * part(row, mesh.rows);
        position[2] = 0.0f;
        position += 3;
        if (column > 0 && row > 0) {
            for (const int back : {mesh.rows + 1, mesh.rows, 0, mesh.rows + 1, 0, 1}) {
                *index++ = static_cast<jshort>(at - back);
            }
        }
    }
    std::ranges::copy(mesh.matrix, JniEnvironment::elements(matrix).begin());
}

TestHost::~TestHost() {
    loaded.unload();
    recorder.reset();
}

void TestHost::newContext() {
    context.reset();
    context.emplace(width, height);
    if (rasterisedSide) {
        rasterise(*rasterisedSide);
    }
}

void TestHost::rasterise(int side) {
    rasterisedSide = side;
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, side, side);
}

void TestHost::setting(bool ink) {
    inkEnabled = ink;
    native().onInitSetting(env, nullptr, width, height, ink);
}

void TestHost::setting(int screenWidth, int screenHeight, bool ink) {
    width = screenWidth;
    height = screenHeight;
    setting(ink);
}

std::string TestHost::initBuffers() {
    recorder.nextLabels = {"positions", "heights", "indices"};
    return recorder.record([&] { native().onInitUVHBuffer(env, nullptr); });
}

std::string TestHost::initGpu() {
    recorder.nextLabels = {"water.vert", "water.frag", "water"};
    if (inkEnabled) {
        for (const char* const label :
             {"advect.vert", "advect.frag", "advect", "impulse.vert", "impulse.frag", "impulse",
              "velocity", "velocity", "inkA", "inkA", "inkB", "inkB", "quad"}) {
            recorder.nextLabels.emplace_back(label);
        }
    }
    return recorder.record([&] { native().onInitGPU(env, nullptr); });
}

void TestHost::setUp(bool ink) {
    setting(ink);
    initBuffers();
    initGpu();
    recorder.nextLabels = {"reflection", "background", "second"};
    for (std::size_t index = 0; index < images.size(); ++index) {
        if (!images[index].empty()) {
            EXPECT_EQ(load(images[index], static_cast<int>(index)), 0);
        }
    }
}

jint TestHost::load(const Bytes& rgba, int index) {
    Bytes pixels = rgba;
    const auto side =
        static_cast<std::uint32_t>(std::lround(std::sqrt(static_cast<double>(rgba.size()) / 4)));
    StandInBitmap bitmap{{side, side, side * 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0}, pixels.data()};
    return load(bitmap, index);
}

jint TestHost::load(StandInBitmap& bitmap, int index) {
    return native().LoadTextures(env, nullptr, reinterpret_cast<jobject>(&bitmap), index);
}

void TestHost::touch(int x, int y, jint action, float pressure) {
    native().onTouch(env, nullptr, x, y, action, pressure);
}

void TestHost::clear() {
    native().clearInkValue(env, nullptr);
}

jint TestHost::shownInk() {
    return native().getClearInkValue(env, nullptr);
}

void TestHost::draw(int frames) {
    const FrameArguments& a = arguments;
    const int floats = mesh.columns * mesh.rows * 3;
    for (; frames > 0; --frames) {
        native().onDrawFrame(env, nullptr, positions, heights, indices, floats, floats,
                             a.indexCount, matrix, mesh.width, mesh.height, mesh.columns, mesh.rows,
                             a.refractiveIndex, a.alpha, a.alphaRatio1Scale, 9.0f, a.inkRed,
                             a.inkGreen, a.inkBlue, a.fresnelRatio, a.specularRatio, a.exponent,
                             a.useSecondBackground);
    }
}

std::string TestHost::recordedFrame() {
    return recorder.record([this] { draw(); });
}

std::map<std::string, std::string> TestHost::uniformsOfFrame() {
    recordedFrame();
    return recorder.uniforms();
}

}  // namespace testhost
