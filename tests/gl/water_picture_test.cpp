#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>

#include "image.h"

// The picture on the screen, against the water's shaders in double arithmetic.

namespace gltest {
namespace {

using hostkit::JniEnvironment;
namespace native = hostkit::native;

constexpr int screenWidth = 120;
constexpr int screenHeight = 180;

using Vector = std::array<double, 3>;

double dot(Vector a, Vector b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector normalized(Vector v) {
    const double length = std::sqrt(dot(v, v));
    return {v[0] / length, v[1] / length, v[2] / length};
}

/// What the vertex stage hands on: the place in clip space, and 11 numbers to interpolate.
struct Vertex {
    Point clip;
    std::array<double, 11> varying;  // sheen u v, background u v, normal, half vector, height
};

Vector widened(float x, float y, float z) {
    return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
}

Vector transformed(std::span<const float> m, Vector v) {
    const auto row = [&](std::size_t r) {
        return dot(widened(m[r], m[4 + r], m[8 + r]), v) + static_cast<double>(m[12 + r]);
    };
    return {row(0), row(1), row(2)};
}

Vertex vertexStage(const Scene& scene, std::size_t index) {
    const auto positions = JniEnvironment::elements(scene.positions).subspan(index * 3, 3);
    const auto heights = JniEnvironment::elements(scene.heights).subspan(index * 3, 3);
    const auto matrix = JniEnvironment::elements(scene.matrix);
    const auto [x, y, flat] = widened(positions[0], positions[1], positions[2]);
    const auto [h, rightHeight, upperHeight] = widened(heights[0], heights[1], heights[2]);
    const double width = scene.arguments.meshSizeWidth, height = scene.arguments.meshSizeHeight;
    const double bend = static_cast<double>(scene.arguments.refractiveIndex) - 1.0;
    const double z = h * 0.25;
    const double slopeX = (h - rightHeight) * 0.25;
    const double slopeY = (h - upperHeight) * 0.25;
    const double nz = std::sqrt(slopeX * slopeX + slopeY * slopeY + 1);
    const double nx = slopeX / nz, ny = slopeY / nz;
    Vector d = normalized({x, y, z + 30});
    const double t = dot(d, {nx, ny, 1}) * bend;
    d = {d[0] + nx * t, d[1] + ny * t, d[2]};
    const double reach = (30.9 - z) / d[2];
    const Vector clip = transformed(matrix, {x, y, flat});
    const Vector light = transformed(matrix, {5, -5, 1});
    const Vector eye = normalized({-clip[0], -clip[1], 1 - clip[2]});
    const Vector normal = normalized({nx, ny, 0.6});
    const Vector half = normalized({eye[0] + light[0], eye[1] + light[1], eye[2] + light[2]});
    return {{clip[0], clip[1]},
            {nx * 0.5 + 0.5 + y / width * 0.25, ny * 0.5 + 0.5 + x / height * 0.25,
             (d[0] * reach + x) / (width / 2) * 0.25 + 0.5,
             (d[1] * reach + y) / (height / 2) * -0.25 + 0.5, normal[0], normal[1], normal[2],
             half[0], half[1], half[2], h}};
}

/// How often a picture met the bounds of its terms: a test of a bound that no pixel meets tests
/// nothing.
struct Coverage {
    int flat = 0, highestSpecular = 0, lowestSpecular = 0, freeSpecular = 0, fresnel = 0;

    void expectAll() const {
        for (const int pixels : {flat, highestSpecular, lowestSpecular, freeSpecular, fresnel}) {
            EXPECT_GT(pixels, 300);
        }
    }
};

Vector sheen(const Scene& scene, const Vertex& at, double specularLimit, Coverage& coverage) {
    const FrameArguments& a = scene.arguments;
    const auto& v = at.varying;
    static const Image picture{pictureSize, pictureSize, smoothPicture(0)};
    const Vector normal = {v[4], v[5], v[6]};
    const double facing = std::max(dot(normal, {v[7], v[8], v[9]}), 0.0);
    const double t = std::clamp(std::abs(v[10]), 0.0, 1.13);
    const double shine =
        static_cast<double>(a.specularRatio) * std::pow(facing, static_cast<double>(a.exponent));
    const double specular = std::clamp(shine, 1.0, specularLimit);
    const double lit = std::clamp(std::max(dot(normal, {5, -5, 1}), 0.0) - 0.99, 0.0, 0.3);
    const double weight = static_cast<double>(a.alphaRatio1Scale) * static_cast<double>(a.alpha) +
                          static_cast<double>(a.fresnelRatio) * lit;
    coverage.flat += t < 0.05;
    coverage.highestSpecular += shine > specularLimit;
    coverage.lowestSpecular += shine < 1;
    coverage.freeSpecular += shine > 1 && shine < specularLimit;
    coverage.fresnel += lit > 0.1 && lit < 0.29;
    Vector color;
    for (int c = 0; c < 3; ++c) {
        color[static_cast<std::size_t>(c)] =
            t * specular * weight * picture.sample({v[0], v[1]}, c);
    }
    return color;
}

/// The vertex record at a place, interpolated in the triangle that holds it; none outside of the
/// mesh, nor on its rim.
std::optional<Vertex> interpolated(const std::vector<Vertex>& vertices,
                                   std::span<const jshort> indices, Point p) {
    const auto side = [](Point a, Point b, Point c) {
        return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    };
    for (std::size_t i = 0; i < indices.size(); i += 3) {
        const auto corner = [&](std::size_t n) -> const Vertex& {
            return vertices[static_cast<std::size_t>(indices[i + n])];
        };
        const Point a = corner(0).clip, b = corner(1).clip, c = corner(2).clip;
        const double whole = side(a, b, c);
        const double wa = side(p, b, c) / whole, wb = side(p, c, a) / whole, wc = 1 - wa - wb;
        if (wa >= 0 && wb >= 0 && wc >= 0) {
            Vertex at{p, {}};
            for (std::size_t n = 0; n < at.varying.size(); ++n) {
                at.varying[n] = wa * corner(0).varying[n] + wb * corner(1).varying[n] +
                                wc * corner(2).varying[n];
            }
            return at;
        }
    }
    return std::nullopt;
}

/// Between stripes the rasteriser, which filters in 8 bits, may find any density.
bool isBetweenStripes(const Image& ink, Point at) {
    return ink.value({at.x - 0.005, at.y}, 0) != ink.value({at.x + 0.005, at.y}, 0);
}

/// Compares the picture with the shaders. `ink` is what the water shows, none without ink;
/// `absorption` what full ink takes from each channel.
void expectPicture(const Scene& scene, Coverage& coverage, const Image* ink, double intensity = 0,
                   Vector absorption = {}) {
    const FrameArguments& a = scene.arguments;
    const Image background{pictureSize, pictureSize, smoothPicture(a.useSecondBackground ? 10 : 5)};
    std::vector<Vertex> vertices;
    for (std::size_t index = 0; index < meshColumns * meshRows; ++index) {
        vertices.push_back(vertexStage(scene, index));
    }
    Bytes rgba(std::size_t{screenWidth} * screenHeight * 4);
    glReadPixels(0, 0, screenWidth, screenHeight, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    const Image picture{screenWidth, screenHeight, rgba};
    double worst = 0;
    for (int y = 0; y < screenHeight; ++y) {
        for (int x = 0; x < screenWidth; ++x) {
            const Point at = {(x + 0.5) / screenWidth, (y + 0.5) / screenHeight};
            const auto vertex = interpolated(vertices, JniEnvironment::elements(scene.indices),
                                             {at.x * 2 - 1, at.y * 2 - 1});
            if (!vertex || (ink && isBetweenStripes(*ink, at))) {
                continue;
            }
            const Vector shine = sheen(scene, *vertex, ink ? 4.5 : 5.5, coverage);
            const double density = ink ? ink->value(at, 0) : 0;
            for (std::size_t c = 0; c < 3; ++c) {
                const int channel = static_cast<int>(c);
                const double light =
                    shine[c] + background.sample({vertex->varying[2], vertex->varying[3]}, channel);
                const double expected =
                    std::min(light / (1 + intensity * density * absorption[c]), 1.0);
                worst = std::max(worst, 255 * std::abs(expected - picture.channel(x, y, channel)));
            }
            EXPECT_EQ(picture.channel(x, y, 3), 1.0);
        }
    }
    // Of 255, seen: 3.7, where the rasteriser takes powers in halves.
    EXPECT_LT(worst, 5);
}

/// Waves whose every vertex has heights of its own, so that no two can be mixed up.
void makeWaves(const Scene& scene, float size) {
    std::minstd_rand random(3);
    for (float& height : JniEnvironment::elements(scene.heights)) {
        height = size * (static_cast<float>(random() % 2001) / 1000.0f - 1.0f);
    }
}

/// Upright stripes of the densities that matter: the ends, and some whose low byte shows.
Bytes stripedInk() {
    const double densities[8] = {0, 0.25, 0.5, 0.9, 10.6, 64, 100.7, 127};
    Bytes rgba(std::size_t{512} * 1024 * 4);
    for (std::size_t texel = 0; texel < 512 * 1024; ++texel) {
        const double density = densities[texel % 512 / 64];
        rgba[texel * 4] = static_cast<std::uint8_t>(density);
        rgba[texel * 4 + 1] = static_cast<std::uint8_t>(255 * (density - std::floor(density)));
    }
    return rgba;
}

/// A frame over a colour that no water has; the water finds this ink.
void draw(Scene& scene, const Image* ink = nullptr) {
    glClearColor(0.9f, 0.1f, 0.9f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    scene.recorder.inside = [&](const char* function) {
        if (ink && function == std::string("glDrawElements")) {
            overwrite(GL_TEXTURE2, ink->width, ink->height, ink->rgba);
        }
    };
    scene.draw();
    scene.recorder.inside = nullptr;
}

TEST(WaterPicture, WavesRefractAndShine) {
    Scene scene(screenWidth, screenHeight, false);
    scene.setUp();
    Coverage coverage;
    for (const float size : {0.0f, 0.6f, 4.0f}) {
        for (const float specularRatio : {3.0f, 30.0f}) {
            SCOPED_TRACE("waves of " + text(size) + ", specular " + text(specularRatio));
            scene.arguments.specularRatio = specularRatio;
            scene.arguments.useSecondBackground = size > 1;
            makeWaves(scene, size);
            draw(scene);
            expectPicture(scene, coverage, nullptr);
        }
    }
    coverage.expectAll();
}

TEST(WaterPicture, InkStainsInItsColour) {
    struct Case {
        const char* name;
        float red, green, blue;
        bool isCleared;
    };
    const Case cases[] = {{"white, as set", 0, 0, 0, false},
                          {"red", 0.9f, 0, 0.3f, false},
                          {"cleared", 0.9f, 0, 0.3f, true}};
    Scene scene(screenWidth, screenHeight, true);
    scene.setUp();
    scene.arguments.specularRatio = 30;
    makeWaves(scene, 1);
    const Image ink{512, 1024, stripedInk()};
    Coverage coverage;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Vector absorption = {0.499, 0.499, 0.499};
        if (c.red > 0) {
            scene.arguments.inkRed = c.red;
            scene.arguments.inkGreen = c.green;
            scene.arguments.inkBlue = c.blue;
            absorption = {1.499 / 0.95 - 1, 1.499 / 0.05 - 1, 1.499 / 0.35 - 1};
            scene.touch(60, 90, Down);
        }
        if (c.isCleared) {
            scene.draw();
            native::clearInkValue(scene.env, nullptr);
        }
        draw(scene, &ink);
        expectPicture(scene, coverage, &ink, c.isCleared ? 0 : 0.02, absorption);
    }
    coverage.expectAll();
}

TEST(WaterPicture, NoIndicesNoPixels) {
    Scene scene(screenWidth, screenHeight, false);
    scene.setUp();
    scene.arguments.indexCount = 0;
    draw(scene);
    const Bytes pixels = scene.context->readPixels();
    EXPECT_EQ(std::ranges::count(pixels, 26),
              screenWidth * screenHeight);  // the green of the clear colour
}

}  // namespace
}  // namespace gltest
