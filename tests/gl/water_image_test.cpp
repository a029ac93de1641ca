#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "image.h"
#include "velmora/ink_light.h"

// Compares the image on the screen with a model of the water's shaders. The model computes in double precision.

namespace gltest {
namespace {

constexpr int screenWidth = 120, screenHeight = 180;
constexpr int meshColumns = shearedMesh.columns, meshRows = shearedMesh.rows;
constexpr int meshWidth = shearedMesh.width, meshHeight = shearedMesh.height;

using Vector = std::array<double, 3>;

double dot(Vector a, Vector b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector normalized(Vector v) {
    const double length = std::sqrt(dot(v, v));
    return {v[0] / length, v[1] / length, v[2] / length};
}

/// Outputs of the vertex shader. Each enumerator is the index of the output's first component in a Vertex.
enum Varying : std::size_t { Reflection, Background = 2, Normal = 4, Half = 7, Height = 10 };
using Vertex = std::array<double, 11>;

Point pointAt(const Vertex& v, Varying first) {
    return {v[first], v[first + 1]};
}
template <class Elements>
Vector vectorAt(const Elements& elements, std::size_t first, std::size_t stride = 1) {
    return {static_cast<double>(elements[first]), static_cast<double>(elements[first + stride]),
            static_cast<double>(elements[first + 2 * stride])};
}

Vector transformed(std::span<const float> m, Vector v) {
    const Vector move = vectorAt(m, 12);
    return {dot(vectorAt(m, 0, 4), v) + move[0], dot(vectorAt(m, 1, 4), v) + move[1],
            dot(vectorAt(m, 2, 4), v) + move[2]};
}

Vertex vertexStage(const TestHost& host, std::size_t index) {
    const auto matrix = JniEnvironment::elements(host.matrix);
    const auto [x, y, flat] = vectorAt(JniEnvironment::elements(host.positions), index * 3);
    const auto [h, hRight, hUpper] = vectorAt(JniEnvironment::elements(host.heights), index * 3);
    const double z = h * 0.25;
    const Vector n = normalized({(h - hRight) * 0.25, (h - hUpper) * 0.25, 1});
    const Vector d = normalized({x, y, z + 30});
    const double t =
        dot(d, {n[0], n[1], 1}) * (static_cast<double>(host.arguments.refractiveIndex) - 1.0);
    const double reach = (30.9 - z) / d[2];
    const Vector place = transformed(matrix, {x, y, flat}), light = transformed(matrix, {5, -5, 1});
    const Vector eye = normalized({-place[0], -place[1], 1 - place[2]});
    const Vector bent = normalized({n[0], n[1], 0.6});
    const Vector between = normalized({eye[0] + light[0], eye[1] + light[1], eye[2] + light[2]});
    const Point met = {((d[0] + n[0] * t) * reach + x) / (meshWidth / 2.0),
                       ((d[1] + n[1] * t) * reach + y) / (meshHeight / 2.0)};
    Vertex v = {n[0] * 0.5 + 0.5 + y / meshWidth * 0.25, n[1] * 0.5 + 0.5 + x / meshHeight * 0.25,
                met.x * 0.25 + 0.5, 0.5 - met.y * 0.25};
    std::ranges::copy(bent, &v[Normal]);
    std::ranges::copy(between, &v[Half]);
    v[Height] = h;
    return v;
}

/// Returns the colour of a pixel before the ink darkens it.
Vector light(const TestHost& host, const Vertex& at, double specularLimit) {
    const FrameArguments& a = host.arguments;
    static const Image reflectionMap{imageSize, imageSize, smoothImage(0)};
    static const Image backgrounds[2] = {{imageSize, imageSize, smoothImage(5)},
                                         {imageSize, imageSize, smoothImage(10)}};
    const auto wide = [](float number) { return static_cast<double>(number); };
    const double shine =
        std::pow(std::max(dot(vectorAt(at, Normal), vectorAt(at, Half)), 0.0), wide(a.exponent));
    const double specular = std::clamp(wide(a.specularRatio) * shine, 1.0, specularLimit);
    const double lit =
        std::clamp(std::max(dot(vectorAt(at, Normal), {5, -5, 1}), 0.0) - 0.99, 0.0, 0.3);
    const double weight = wide(a.alphaRatio1Scale) * wide(a.alpha) + wide(a.fresnelRatio) * lit;
    const double strength = std::clamp(std::abs(at[Height]), 0.0, 1.13) * specular * weight;
    Vector color;
    for (int c = 0; c < 3; ++c) {
        color[static_cast<std::size_t>(c)] =
            strength * reflectionMap.sample(pointAt(at, Reflection), c) +
            backgrounds[a.useSecondBackground].sample(pointAt(at, Background), c);
    }
    return color;
}

/// Returns the outputs of the vertex shader at a point of clip space, interpolated within the point's triangle. Returns
/// nothing if the point is outside the mesh.
std::optional<Vertex> interpolated(const TestHost& host, const std::vector<Vertex>& vertices,
                                   Point p) {
    const auto m = JniEnvironment::elements(host.matrix);
    const Vector right = vectorAt(m, 0), up = vectorAt(m, 4), move = vectorAt(m, 12);
    const double dx = p.x - move[0], dy = p.y - move[1];
    const double area = right[0] * up[1] - up[0] * right[1];
    const double x = (up[1] * dx - up[0] * dy) / area, y = (right[0] * dy - right[1] * dx) / area;
    const double column = (x / meshWidth + 0.5) * (meshColumns - 1);
    const double row = (0.5 - y / meshHeight) * (meshRows - 1);
    if (column < 0 || column >= meshColumns - 1 || row < 0 || row >= meshRows - 1) {
        return std::nullopt;
    }
    const double u = column - std::floor(column), v = row - std::floor(row);
    const auto first = static_cast<std::size_t>(column) * meshRows + static_cast<std::size_t>(row);
    const Vertex &a = vertices[first], &b = vertices[first + meshRows + 1];
    const Vertex& c = vertices[first + (u > v ? meshRows : 1)];
    Vertex at;
    for (std::size_t n = 0; n < at.size(); ++n) {
        at[n] = (1 - std::max(u, v)) * a[n] + std::min(u, v) * b[n] + std::abs(u - v) * c[n];
    }
    return at;
}

/// Draws a frame over a colour that water never has, and compares the image with the model.
/// `ink` holds the densities that the shader reads. If it is null, the frame shows no ink. `color` is the ink colour
/// that the host passes. The expected darkening comes from velmora/ink_light.h, so the test also compares that formula
/// with the shader.
void expectImage(TestHost& host, const Image* ink = nullptr, std::array<float, 3> color = {}) {
    glClearColor(0.9f, 0.1f, 0.9f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    host.recorder.inside = [&](const std::string& function) {
        if (ink && function == "glDrawElements") {
            overwrite(GL_TEXTURE2, ink->width, ink->height, ink->rgba);
        }
    };
    host.draw();
    host.recorder.inside = nullptr;
    Image image{screenWidth, screenHeight, Bytes(std::size_t{screenWidth} * screenHeight * 4)};
    glReadPixels(0, 0, screenWidth, screenHeight, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    std::vector<Vertex> vertices;
    for (std::size_t index = 0; index < meshColumns * meshRows; ++index) {
        vertices.push_back(vertexStage(host, index));
    }
    double worst = 0;
    for (int pixel = 0; pixel < screenWidth * screenHeight; ++pixel) {
        const int x = pixel % screenWidth, y = pixel / screenWidth;
        const Point at = image.centre(x, y);
        const auto vertex = interpolated(host, vertices, 2 * at - Point{1, 1});
        // Skip pixels at the border between two stripes of ink. The rasteriser filters with 8 bits, which makes the
        // density inaccurate there.
        if (!vertex ||
            (ink && ink->value(at - Point{0.005, 0}, 0) != ink->value(at + Point{0.005, 0}, 0))) {
            continue;
        }
        const Vector expected = light(host, *vertex, ink ? 4.5 : 5.5);
        const double density = ink ? ink->value(at, 0) * host.shownInk() : 0;
        for (int c = 0; c < 3; ++c) {
            const auto channel = static_cast<std::size_t>(c);
            const double left =
                expected[channel] * velmora::lightThroughInk(color[channel], density);
            worst = std::max(worst, std::abs(std::min(left, 1.0) - image.channel(x, y, c)));
        }
        EXPECT_EQ(image.channel(x, y, 3), 1.0);
    }
    // The largest measured difference is 3.7 of 255, because the rasteriser only approximates pow.
    EXPECT_LT(255 * worst, 5);
}

/// Gives each vertex a different random height, so that a wrong vertex changes the image.
void makeWaves(const TestHost& host, float size) {
    std::minstd_rand random(3);
    for (float& height : JniEnvironment::elements(host.heights)) {
        height = size * (static_cast<float>(random() % 2001) / 1000.0f - 1.0f);
    }
}

// These tests cover both sides of every limit in the shaders. With their wave sizes and settings, the limited value is
// below the limit at hundreds of pixels and above the limit at hundreds of other pixels.

TEST(WaterImage, WavesRefractAndShine) {
    TestHost host(screenWidth, screenHeight);
    host.setUp(false);
    for (const float size : {0.0f, 0.6f, 4.0f}) {
        for (const float specularRatio : {3.0f, 30.0f}) {
            SCOPED_TRACE(std::to_string(size) + ", specular " + std::to_string(specularRatio));
            host.arguments.specularRatio = specularRatio;
            host.arguments.useSecondBackground = size > 1;
            makeWaves(host, size);
            expectImage(host);
        }
    }
}

TEST(WaterImage, InkDarkensTheWaterByItsColour) {
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.arguments.specularRatio = 30;
    makeWaves(host, 1);
    // Vertical stripes with the lowest and the highest density, and with densities whose low byte changes the colour.
    const Image ink = valueImage(512, 1024, [](Point at) {
        return std::array{
            0.0, 0.25, 0.5, 0.9, 10.6, 64.0, 100.7, 127.0}[static_cast<std::size_t>(at.x * 8)];
    });
    expectImage(host, &ink, {0.95f, 0.95f, 0.95f});  // white, as before the first stroke
    const std::array<float, 3> color = {0.9f, 0, 0.3f};
    host.arguments.inkRed = color[0];
    host.arguments.inkGreen = color[1];
    host.arguments.inkBlue = color[2];
    host.touch(60, 90, Down);
    expectImage(host, &ink, color);
    host.clear();
    expectImage(host, &ink, color);
}

}  // namespace
}  // namespace gltest
