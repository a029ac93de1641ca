#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "effect/effect_state.h"

namespace velmora::test {
namespace {

TEST(Settings, SizesFollowTheScreen) {
    struct Case {
        int width, height, gridWidth, gridHeight, inkWidth, inkHeight;
    };
    for (const Case& tried : {Case{1080, 1920, 90, 160, 512, 1024},
                              {1920, 1080, 160, 90, 1024, 512},
                              {1085, 1919, 90, 159, 512, 1024},
                              {800, 800, 66, 66, 512, 1024},
                              {11, 12, 0, 1, 512, 1024},
                              {-23, 0, -1, 0, 512, 1024}}) {
        EffectState state;
        applySettings(state, tried.width, tried.height, true);
        EXPECT_EQ(state.screenWidth, tried.width);
        EXPECT_EQ(state.screenHeight, tried.height);
        EXPECT_EQ(state.velocityGridWidth, tried.gridWidth);
        EXPECT_EQ(state.velocityGridHeight, tried.gridHeight);
        EXPECT_EQ(state.inkWidth, tried.inkWidth);
        EXPECT_EQ(state.inkHeight, tried.inkHeight);
        EXPECT_TRUE(gInkEnabled);
    }
}

std::vector<unsigned char> bytesOf(const EffectState& state) {
    const auto* begin = reinterpret_cast<const unsigned char*>(&state);
    return {begin, begin + sizeof state};
}

TEST(Settings, InkModeWritesEveryDefaultAndNothingElse) {
    constexpr std::pair<float EffectState::*, float> floats[] = {
        {&EffectState::gridScale, 2.5f},        {&EffectState::inkRadius, 2.0f},
        {&EffectState::impulseDensity, 200.0f}, {&EffectState::timeStep, 0.25f},
        {&EffectState::gradientScale, 0.2f},    {&EffectState::velocityDissipation, 0.9f},
        {&EffectState::sourceStrength, 50.0f},  {&EffectState::sourceRadius, 40.0f},
        {&EffectState::backwardStepSize, 1.0f}, {&EffectState::inkIntensity, 0.2f}};
    constexpr std::pair<std::int32_t EffectState::*, std::int32_t> ints[] = {
        {&EffectState::screenWidth, 1080},     {&EffectState::screenHeight, 1920},
        {&EffectState::velocityGridWidth, 90}, {&EffectState::velocityGridHeight, 160},
        {&EffectState::inkWidth, 512},         {&EffectState::inkHeight, 1024},
        {&EffectState::jacobiIterations, 20},  {&EffectState::touchMargin, 10}};
    EffectState state;
    state.inkColorOffset = 0.5f;
    state.impulseCurrent = {1.0f, 2.0f};
    state.dragSegment = {1, 2, 3, 4};
    state.quadBuffer = state.waterTexture = state.meshIndexBuffer = 9;
    state.dragMode = FastDrag;
    const auto before = bytesOf(state);
    applySettings(state, 1080, 1920, true);
    EXPECT_EQ(state.inkDissipation, 0.96f);
    EXPECT_EQ(state.inkAmount, 1.0f);
    EXPECT_EQ(state.dragMode, 0);
    EXPECT_EQ(state.inkColor.r + state.inkColor.g + state.inkColor.b, 3.0f);
    for (const auto& [field, value] : floats) {
        EXPECT_EQ(std::exchange(state.*field, 0.0f), value);
    }
    for (const auto& [field, value] : ints) {
        EXPECT_EQ(std::exchange(state.*field, 0), value);
    }
    state.inkDissipation = state.inkAmount = 0.0f;
    state.dragMode = FastDrag;
    state.inkColor = {};
    EXPECT_EQ(bytesOf(state), before);
}

TEST(Settings, WaterOnlyModeChangesSizeFlagAndColourOnly) {
    EffectState state;
    applySettings(state, 1080, 1920, true);
    state.inkAmount = 0.0f;
    state.dragMode = MediumDrag;
    state.touchMargin = 60;
    state.inkColor = {0.1f, 0.2f, 0.3f};
    const auto before = bytesOf(state);
    applySettings(state, 500, 400, false);
    EXPECT_FALSE(gInkEnabled);
    EXPECT_EQ(state.screenWidth, 500);
    EXPECT_EQ(state.screenHeight, 400);
    EXPECT_EQ(state.inkColor.r, 1.0f);
    EXPECT_EQ(state.inkColor.g, 1.0f);
    EXPECT_EQ(state.inkColor.b, 1.0f);
    state.screenWidth = 1080;
    state.screenHeight = 1920;
    state.inkColor = {0.1f, 0.2f, 0.3f};
    EXPECT_EQ(bytesOf(state), before);
}

TEST(Settings, InsideIsStrictAndDefinedForAnyInts) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    struct Case {
        int x, y;
        bool isInside;
    };
    EffectState state;
    applySettings(state, 200, 300, false);
    for (const Case& tried : {Case{10, 150, false},
                              {11, 150, true},
                              {189, 150, true},
                              {190, 150, false},
                              {100, 10, false},
                              {100, 11, true},
                              {100, 289, true},
                              {100, 290, false},
                              {most, 150, false},
                              {least, 150, false},
                              {100, most, false},
                              {100, least, false}}) {
        EXPECT_EQ(isInside(state, tried.x, tried.y, 10), tried.isInside)
            << tried.x << ' ' << tried.y;
    }
    applySettings(state, least, least, false);
    EXPECT_FALSE(isInside(state, 0, 0, 60));
    EXPECT_EQ(flippedY(state, most), -4294967296.0f);
}

}  // namespace
}  // namespace velmora::test
