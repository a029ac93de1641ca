#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "image.h"

// Compares the ink target after each pass with a model of the pass in double precision.

namespace gltest {
namespace {

constexpr int screenWidth = 540, screenHeight = 960;
constexpr int inkWidth = 512, inkHeight = 1024;

double wave(double turns) {
    return std::sin(2 * std::numbers::pi * turns);
}

/// Returns ink whose density changes little within half a texel. All densities are at least 5 away from both limits.
Image smoothInk() {
    return valueImage(inkWidth, inkHeight, [](Point p) {
        return 60 + 50 * wave(1.3 * p.x + 0.1) * wave(0.9 * p.y + 0.2);
    });
}

/// Returns velocities of all directions and of all speeds that the texture format can store. If `strength` is 0, all
/// velocities are 0.
Image velocities(int strength) {
    return valueImage(
        45, 80, [=](Point p) { return 127 + 120 * strength * wave(0.8 * p.x + 0.6 * p.y); },
        [=](Point p) { return 127 + 120 * strength * wave(0.7 * p.y - 0.5 * p.x + 0.3); });
}

/// Returns the value of a uniform of the current program.
Point uniform(const char* name) {
    GLint program = 0;
    GLfloat values[4] = {};
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    const auto current = static_cast<GLuint>(program);
    glGetUniformfv(current, glGetUniformLocation(current, name), values);
    return {static_cast<double>(values[0]), static_cast<double>(values[1])};
}

/// Model of a shader: a function that returns the value of a texel. Its arguments are the texture coordinate of the
/// texel and the position of the texel on the screen.
using Shader = std::function<double(Point at, Point p)>;

Shader advection(const Image& source, const Image& velocity) {
    const Point center = uniform("center"), timeStep = uniform("TimeStep");
    const double dissipation = uniform("Dissipation").x, wholeStep = uniform("BackwardStepSize").x;
    const bool isSlow = uniform("drag").x < 2;
    return [=, &source, &velocity](Point at, Point p) {
        const Point flow = {velocity.value(at, 0) - 127, velocity.value(at, 2) - 127};
        const double d = distance(center, p);
        const double step = isSlow && d < 80 ? 0.0075 * d : wholeStep;
        return dissipation * source.value(at - 0.25 * step * (timeStep * flow), 0);
    };
}

Shader impulse(const Image& source) {
    const Point current = uniform("current"), previous = uniform("previous");
    const Point normal = uniform("normal");
    const double radius = uniform("Radius").x, density = uniform("ImpulseDensity").x;
    const double length = uniform("len").x;
    const bool isStroke = uniform("mode").x == 2;
    return [=, &source](Point at, Point p) {
        const double t = dot(normal, p - previous);
        const double d = distance(isStroke ? previous + t * normal : current, p);
        const double added = !isStroke ? density / (1 + d)
                             : t > 0 && t < length
                                 ? density * std::exp(-d * d / (0.8 * radius * radius))
                                 : 0;
        return source.value(at, 0) + (d < radius ? added : 0);
    };
}

/// Compares the bound target with the model at every third texel in x and y. The position on the screen that a shader
/// computes can be wrong by up to a quarter of a pixel. The test therefore evaluates the model at nine positions within
/// this error. The texel must be less than `tolerance` outside the range of the nine values.
void expectPass(const Shader& shader, double tolerance) {
    Image result{inkWidth, inkHeight, Bytes(std::size_t{inkWidth} * inkHeight * 4)};
    glReadPixels(0, 0, inkWidth, inkHeight, GL_RGBA, GL_UNSIGNED_BYTE, result.rgba.data());
    const Point scale = uniform("Scale");
    double worst = 0;
    constexpr int columns = inkWidth / 3, rows = inkHeight / 3;
    for (int texel = 0; texel < columns * rows; ++texel) {
        const Point at = result.centre(texel % columns * 3, texel / columns * 3);
        double low = 127, high = -127;
        for (int place = 0; place < 9; ++place) {
            const int row = place / 3;
            const Point p = scale * at + 0.25 * Point{place % 3 - 1.0, row - 1.0};
            const double value = std::clamp(shader(at, p), -127.0, 127.0);
            low = std::min(low, value);
            high = std::max(high, value);
        }
        const double found = result.value(at, 0);
        worst = std::max({worst, low - found, found - high});
    }
    EXPECT_LT(worst, tolerance);
}

struct InkShaders : testing::Test {
    struct Event {
        int x, y, action;
    };
    using Events = std::vector<Event>;

    InkShaders() { host.setUp(); }
    void play(const Events& events, int frames, int x = 0, int y = 0) {
        for (const Event& event : events) {
            host.touch(x + event.x, y + event.y, event.action);
        }
        for (int frame = 0; frame < frames; ++frame) {
            host.draw();
        }
    }
    /// Draws a frame with smooth ink and compares each pass with the model of its shader. If `isStill` is true, all
    /// velocities are zero. Otherwise they vary smoothly.
    void expectPasses(bool isStill) {
        const Image ink = smoothInk(), velocity = velocities(isStill ? 0 : 1);
        Shader shader;
        int pass = 0;
        host.recorder.inside = [&](const std::string& function) {
            const bool advects = pass < 4;
            if (function == "glDrawArrays") {
                overwrite(advects ? GL_TEXTURE1 : GL_TEXTURE0, ink.width, ink.height, ink.rgba);
                if (advects) {
                    overwrite(GL_TEXTURE0, velocity.width, velocity.height, velocity.rgba);
                }
                shader = advects ? advection(ink, velocity) : impulse(ink);
            } else if (shader && function == "glDisableVertexAttribArray") {
                SCOPED_TRACE("pass " + std::to_string(pass++));
                // The tolerance is about two steps of 1/255. A renderer with 32-bit arithmetic and filtering reaches
                // this accuracy.
                expectPass(shader, 0.008);
                shader = nullptr;
            }
        };
        host.draw();
        host.recorder.inside = nullptr;
        EXPECT_EQ(pass, 5);
    }
    TestHost host{screenWidth, screenHeight};
};

TEST_F(InkShaders, EachPassOfAFrameComputesItsShader) {
    const Events tap = {{300, 400, Down}};
    const Events slow = {{200, 500, Down}, {204, 500, Move}, {205, 500, Move}};
    const Events medium = {{200, 500, Down}, {204, 500, Move}, {208, 500, Move}};
    const Events fast = {{200, 500, Down}, {204, 500, Move}, {300, 420, Move}};
    const struct {
        const char* name;
        Events events;
        int framesBefore;
        bool isStill;
    } cases[] = {
        {"first frame of a tap", tap, 0, false},
        {"seventh frame of a tap", tap, 6, false},
        {"tap, no flow", tap, 4, true},
        {"slow drag", slow, 1, false},
        {"medium drag", medium, 1, false},
        {"fast drag, no flow", fast, 0, true},
        {"fast drag, second frame", fast, 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        play(c.events, c.framesBefore);
        expectPasses(c.isStill);
        host.touch(0, 0, Cancel);
    }
}

TEST_F(InkShaders, OnlyTouchesMoreThanTheMarginFromEveryEdgeDeposit) {
    const struct {
        const char* name;
        Events events;
        int margin;
    } cases[] = {{"tap", {{0, 0, Down}}, 60},
                 {"slow", {{-4, 0, Down}, {-1, 0, Move}, {0, 0, Move}}, 12},
                 {"medium", {{-6, 0, Down}, {-3, 0, Move}, {0, 0, Move}}, 10},
                 {"fast", {{-23, 0, Down}, {-20, 0, Move}, {0, 0, Move}}, 60}};
    host.rasterise(0);
    for (const auto& c : cases) {
        const int m = c.margin, right = screenWidth - m, bottom = screenHeight - m;
        for (const int inside : {0, 1}) {
            for (const auto& [x, y] : {std::pair{m + inside, 400},
                                       {right - inside, 400},
                                       {270, m + inside},
                                       {270, bottom - inside}}) {
                SCOPED_TRACE(std::string(c.name) + " ending at " + std::to_string(x) + ", " +
                             std::to_string(y));
                // Each kind of stroke has its own margin at the edges of the screen. The margin applies from the second
                // frame on, because each frame uses the margin of the previous frame's stroke.
                play(c.events, 2, x, y);
                host.arguments.inkGreen = inside ? 0.5f : 0.0f;
                auto uniforms = host.uniformsOfFrame();
                EXPECT_EQ(uniforms.contains("impulse.mode"), inside);
                EXPECT_EQ(uniforms["water.ink_color"],
                          inside ? "3.9966664, 1.7254544, 0.499" : "3.9966664, 28.98, 0.499");
                host.touch(0, 0, Cancel);
            }
        }
    }
}

}  // namespace
}  // namespace gltest
