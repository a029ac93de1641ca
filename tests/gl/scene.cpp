#include "scene.h"

#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cmath>

namespace gltest {

Bytes smoothPicture(int phase) {
    Bytes rgba;
    for (int at = 0; at < pictureSize * pictureSize * 4; ++at) {
        const int channel = at % 4, x = at / 4 % pictureSize, y = at / 4 / pictureSize;
        const double wave = std::sin(0.2 * (x + phase) + 1.1 * channel) *
                            std::cos(0.13 * y * (channel + 1) + phase);
        rgba.push_back(static_cast<std::uint8_t>(std::lround(70 + 50 * wave)));
    }
    return rgba;
}

void overwrite(GLenum unit, int width, int height, const Bytes& rgba) {
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glActiveTexture(unit);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glActiveTexture(static_cast<GLenum>(active));
}

Scene::Scene(int width, int height, bool ink)
    : context(width, height),
      positions(jni.newFloatArray(meshColumns * meshRows * 3)),
      heights(jni.newFloatArray(meshColumns * meshRows * 3)),
      matrix(jni.newFloatArray(16)),
      indices(jni.newShortArray((meshColumns - 1) * (meshRows - 1) * 6)) {
    for (const TouchCode action : {Cancel, Down, Move, Cancel}) {
        touch(0, 0, action);
    }
    setting(width, height, ink);
    auto position = JniEnvironment::elements(positions).begin();
    auto index = JniEnvironment::elements(indices).begin();
    for (int at = 0; at < meshColumns * meshRows; ++at) {
        const int column = at / meshRows, row = at % meshRows;
        *position++ = meshWidth * (static_cast<float>(column) / (meshColumns - 1) - 0.5f);
        *position++ = meshHeight * (0.5f - static_cast<float>(row) / (meshRows - 1));
        *position++ = 0.0f;
        if (column > 0 && row > 0) {
            for (const int back : {meshRows + 1, meshRows, 0, meshRows + 1, 0, 1}) {
                *index++ = static_cast<jshort>(at - back);
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

void Scene::setting(int width, int height, bool ink) {
    inkEnabled = ink;
    native::onInitSetting(env, nullptr, width, height, ink);
}

std::string Scene::initBuffers() {
    recorder.nextLabels = {"positions", "heights", "indices"};
    return recorder.record([&] { native::onInitUVHBuffer(env, nullptr); });
}

std::string Scene::initGpu() {
    recorder.nextLabels = {"water.vert", "water.frag", "water"};
    if (inkEnabled) {
        for (const char* const label :
             {"advect.vert", "advect.frag", "advect", "impulse.vert", "impulse.frag", "impulse",
              "velocity", "velocity", "inkA", "inkA", "inkB", "inkB", "quad"}) {
            recorder.nextLabels.emplace_back(label);
        }
    }
    return recorder.record([&] { native::onInitGPU(env, nullptr); });
}

void Scene::setUp() {
    initBuffers();
    initGpu();
    recorder.nextLabels = {"sheen", "background", "second"};
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(load(smoothPicture(index * 5), index), 0);
    }
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
    constexpr int floats = meshColumns * meshRows * 3;
    native::onDrawFrame(env, nullptr, positions, heights, indices, floats, floats, a.indexCount,
                        matrix, meshWidth, meshHeight, meshColumns, meshRows, a.refractiveIndex,
                        a.alpha, a.alphaRatio1Scale, 9.0f, a.inkRed, a.inkGreen, a.inkBlue,
                        a.fresnelRatio, a.specularRatio, a.exponent, a.useSecondBackground);
}

void Scene::rasteriseNothing() const {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 0, 0);
}

std::string Scene::recordedFrame() {
    return recorder.record([this] { draw(); });
}

std::map<std::string, std::string> Scene::uniformsOfFrame() {
    recordedFrame();
    return recorder.uniforms();
}

}  // namespace gltest
