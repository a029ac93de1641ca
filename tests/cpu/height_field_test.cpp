#include "water/height_field.h"

#include "simd/flush_subnormals.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

/// A step as the host would work it out on its own arrays, one cell after the other.
struct Water {
    std::vector<float> velocity, height;
    int rowLength;
    WaterRectangle rectangle;

    float laplacian(int i) const {
        const auto h = [&](int at) { return height[static_cast<std::size_t>(at)]; };
        return h(i - rowLength) + h(i - 1) + h(i + 1) + h(i + rowLength) - 4.0f * h(i);
    }

    void accelerate(const WaveSettings& settings, bool& calm) {
        for (int y = rectangle.y0; y < rectangle.y1; ++y) {
            for (int x = rectangle.x0; x < rectangle.x1; ++x) {
                const int i = y * rowLength + x;
                float& v = velocity[static_cast<std::size_t>(i)];
                v = (v + settings.waveSpeed * laplacian(i)) * settings.damping;
                calm = calm && !(v > 0.009f || v < -0.009f);
            }
        }
    }

    void raise() {
        for (int y = rectangle.y0; y < rectangle.y1; ++y) {
            for (int x = rectangle.x0; x < rectangle.x1; ++x) {
                const auto i = static_cast<std::size_t>(y * rowLength + x);
                const float sum = height[i] + velocity[i];
                height[i] = sum > 100.0f ? 100.0f : sum < -100.0f ? -100.0f : sum;
            }
        }
    }

    /// Groups of four read all their inputs before they store, the rest of a row cell by cell.
    void smooth(float weight) {
        for (int y = rectangle.y0; y < rectangle.y1; ++y) {
            for (int x = rectangle.x0; x < rectangle.x1;) {
                const int group = rectangle.x1 - x >= 4 ? 4 : 1;
                float smoothed[4];
                for (int k = 0; k < group; ++k) {
                    const int i = y * rowLength + x + k;
                    smoothed[k] = height[static_cast<std::size_t>(i)] + weight * laplacian(i);
                }
                std::copy_n(smoothed, group, height.begin() + y * rowLength + x);
                x += group;
            }
        }
    }

    bool step(const WaveSettings& settings) {
        const FlushSubnormals flush;
        bool calm = true;
        accelerate(settings, calm);
        raise();
        smooth(settings.damping == 0.94f ? 0.068f : 0.018f);
        return calm || !settings.detectCalm;
    }
};

struct Shape {
    int width, height, frame;
};

/// Steps random water in guarded pages beside the oracle; the frame, of `frame` cells, and the rest
/// of both arrays belong to the comparison.
void compareSteps(Shape shape, Against side, Fill fill, const WaveSettings& settings, int steps) {
    std::mt19937 random(static_cast<unsigned>(shape.width * 1000 + shape.height));
    const int rowLength = shape.width + 2 * shape.frame;
    const int rows = shape.height + 2 * shape.frame;
    const GuardedGrid velocity(rowLength, rows, 1, side, {fill.limit / 10.0f, fill.wild}, random);
    const GuardedGrid height(rowLength, rows, 1, side, fill, random);
    const WaterRectangle rectangle{shape.frame, shape.frame, shape.frame + shape.width,
                                   shape.frame + shape.height};
    const auto copy = [](const GuardedGrid& grid) {
        return std::vector(grid.block.elements().begin(), grid.block.elements().end());
    };
    Water oracle{copy(velocity), copy(height), rowLength, rectangle};
    for (int step = 0; step < steps; ++step) {
        const bool calm =
            stepHeightField({velocity.grid.data, height.grid.data, rowLength}, rectangle, settings);
        ASSERT_EQ(calm, oracle.step(settings)) << "step " << step;
        ASSERT_TRUE(areSame(velocity.block.elements(), oracle.velocity)) << "step " << step;
        ASSERT_TRUE(areSame(height.block.elements(), oracle.height)) << "step " << step;
    }
    ASSERT_TRUE(velocity.block.isIntact() && height.block.isIntact());
}

TEST(HeightField, EveryRectangleStepsAsDefinedAndStaysInItsArrays) {
    for (int width = 0; width <= 17; ++width) {
        for (int height = 0; height <= 5; ++height) {
            for (const Against side : bothSides) {
                for (const Fill fill : {Fill{100.0f}, Fill{100.0f, true}, Fill{0.001f}}) {
                    SCOPED_TRACE(testing::Message() << width << " x " << height);
                    compareSteps({width, height, 1}, side, fill, {0.975f, 0.3f, true}, 2);
                    compareSteps({width, height, 1}, side, fill, {0.94f, 0.4f, false}, 2);
                    compareSteps({width, height, 3}, side, fill, {1.0f, 0.25f, true}, 1);
                }
            }
        }
    }
}

TEST(HeightField, ScreensOfWaterStepAsDefined) {
    for (const Against side : bothSides) {
        compareSteps({58, 105, 1}, side, {100.0f}, {0.975f, 0.3f, true}, 40);
        compareSteps({126, 226, 1}, side, {50.0f}, {0.94f, 0.3f, true}, 10);
        compareSteps({255, 63, 2}, side, {100.0f, true}, {0.975f, 0.3f, true}, 3);
    }
}

constexpr int side = 11;  // of a square grid whose inner nine columns take two groups and a tail
constexpr WaterRectangle inner{1, 1, side - 1, side - 1};

TEST(HeightField, SubnormalsCountAsZeroDuringTheStepOnly) {
    std::vector<float> velocity(side * side, 1e-39f), height(side * side, 2e-38f);
    stepHeightField({velocity.data(), height.data(), side}, inner, {0.9f, 0.1f, true});
    EXPECT_EQ(velocity[side + 1], 0.0f);
    EXPECT_EQ(height[side + 1], 2e-38f);
    volatile float tiny = 1e-39f;
    EXPECT_NE(tiny * 0.5f, 0.0f);
}

TEST(HeightField, CalmBandIncludesItsEndsAndEveryCellDecides) {
    struct Case {
        float velocity;
        bool calm;
    };
    constexpr float end = 0.009f;
    for (const Case tried : {Case{end, true},
                             {std::nextafter(end, 1.0f), false},
                             {-end, true},
                             {std::nextafter(-end, -1.0f), false},
                             {0.0091f, false}}) {
        for (int cell = 0; cell < side * side; ++cell) {
            std::vector<float> velocity(side * side), height(side * side, 7.0f);
            velocity[static_cast<std::size_t>(cell)] = tried.velocity;
            const int x = cell % side;
            const int y = cell / side;
            const bool isInner = x > 0 && x < side - 1 && y > 0 && y < side - 1;
            WaterGrids grids{velocity.data(), height.data(), side};
            EXPECT_EQ(stepHeightField(grids, inner, {1.0f, 0.25f, true}), tried.calm || !isInner);
            EXPECT_TRUE(stepHeightField(grids, inner, {1.0f, 0.25f, false}));
        }
    }
}

TEST(HeightField, HeightsStopExactlyAtTheLimit) {
    for (const float sign : {1.0f, -1.0f}) {
        std::vector<float> velocity(side * side, sign), height(side * side, sign * 100.0f);
        for (int y = inner.y0; y < inner.y1; ++y) {
            std::fill_n(height.begin() + y * side + inner.x0, side - 2, sign * 99.5f);
        }
        stepHeightField({velocity.data(), height.data(), side}, inner, {1.0f, 0.0f, true});
        EXPECT_TRUE(areSame(height, std::vector<float>(side * side, sign * 100.0f)));
        EXPECT_TRUE(areSame(velocity, std::vector<float>(side * side, sign)));
    }
}

TEST(HeightField, OneCellFollowsTheClosedForm) {
    // Alone among fixed zeros, a height H gets the velocity -4 w H d and keeps 1 - 4 s of the sum.
    struct Case {
        float damping;
        double smoothing;
    };
    for (const Case tried : {Case{0.94f, 0.068},
                             {std::nextafter(0.94f, 1.0f), 0.018},
                             {std::nextafter(0.94f, 0.0f), 0.018},
                             {1.0f, 0.018}}) {
        std::vector<float> velocity(9), height(9);
        height[4] = 8.0f;
        stepHeightField({velocity.data(), height.data(), 3}, {1, 1, 2, 2},
                        {tried.damping, 0.125f, true});
        const double v = -4.0 * 0.125 * 8.0 * tried.damping;
        EXPECT_NEAR(velocity[4], v, 1e-6);
        EXPECT_NEAR(height[4], (8.0 + v) * (1.0 - 4.0 * tried.smoothing), 1e-5);
    }
}

}  // namespace
}  // namespace velmora::test
