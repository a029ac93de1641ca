#include <utility>

#include "base/screen.h"
#include "effect/effect_state.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

TEST(Settings, SizesFollowTheScreen) {
    struct Case {
        int width, height, gridWidth, gridHeight, inkWidth, inkHeight;
        bool operator==(const Case&) const = default;
    };
    constexpr Case cases[] = {{1080, 1920, 90, 160, 512, 1024}, {1920, 1080, 160, 90, 1024, 512},
                              {1085, 1919, 90, 159, 512, 1024}, {800, 800, 66, 66, 512, 1024},
                              {11, 12, 0, 1, 512, 1024},        {-23, 0, -1, 0, 512, 1024}};
    for (const Case& tried : cases) {
        EffectState s;
        applySettings(s, tried.width, tried.height, true);
        EXPECT_EQ((Case{s.screenWidth, s.screenHeight, s.velocityGridWidth, s.velocityGridHeight,
                        s.inkWidth, s.inkHeight}),
                  tried);
    }
}

std::vector<unsigned char> bytesOf(const EffectState& state) {
    const auto* begin = reinterpret_cast<const unsigned char*>(&state);
    return {begin, begin + sizeof state};
}

void expectWhite(EffectState& state) {
    const InkColor color = std::exchange(state.inkColor, {0.1f, 0.2f, 0.3f});
    EXPECT_TRUE(color.r == 1.0f && color.g == 1.0f && color.b == 1.0f);
}

TEST(Settings, EachModeWritesItsDefaultsAndNothingElse) {
    constexpr std::pair<float EffectState::*, float> floats[] = {
        {&EffectState::gridScale, 2.5f},        {&EffectState::inkRadius, 2.0f},
        {&EffectState::impulseDensity, 200.0f}, {&EffectState::timeStep, 0.25f},
        {&EffectState::gradientScale, 0.2f},    {&EffectState::velocityDissipation, 0.9f},
        {&EffectState::sourceStrength, 50.0f},  {&EffectState::sourceRadius, 40.0f},
        {&EffectState::backwardStepSize, 1.0f}, {&EffectState::inkIntensity, 0.2f}};
    constexpr std::pair<std::int32_t EffectState::*, std::int32_t> sizes[] = {
        {&EffectState::screenWidth, 1080}, {&EffectState::screenHeight, 1920}};
    constexpr std::pair<std::int32_t EffectState::*, std::int32_t> ints[] = {
        {&EffectState::velocityGridWidth, 90}, {&EffectState::velocityGridHeight, 160},
        {&EffectState::inkWidth, 512},         {&EffectState::inkHeight, 1024},
        {&EffectState::jacobiIterations, 20},  {&EffectState::touchMargin, 10}};
    const auto expectAndReset = [](EffectState& state, const auto& fields) {
        for (const auto& [field, value] : fields) {
            EXPECT_EQ(std::exchange(state.*field, 0), value);
        }
    };
    EffectState state;
    state.inkColorOffset = 0.5f;
    state.impulseCurrent = {1.0f, 2.0f};
    state.dragSegment = {1, 2, 3, 4};
    state.quadBuffer = state.waterTexture = state.meshIndexBuffer = 9;
    state.dragMode = FastDrag;
    state.inkDissipation = state.inkAmount = 7.0f;
    state.inkColor = {0.1f, 0.2f, 0.3f};
    const auto before = bytesOf(state);
    for (const bool withInk : {true, false}) {
        applySettings(state, 1080, 1920, withInk);
        expectAndReset(state, sizes);
        expectWhite(state);
        if (withInk) {
            EXPECT_EQ(state.inkDissipation, 0.96f);
            EXPECT_EQ(state.inkAmount, 1.0f);
            EXPECT_EQ(state.dragMode, 0);
            expectAndReset(state, floats);
            expectAndReset(state, ints);
            state.inkDissipation = state.inkAmount = 7.0f;
            state.dragMode = FastDrag;
        }
        EXPECT_EQ(bytesOf(state), before);
    }
}

TEST(Settings, InsideIsStrictAndDefinedForAnyInts) {
    struct Case {
        int x, y;
        bool isInside;
    };
    EffectState state;
    applySettings(state, 200, 300, false);
    constexpr Case cases[] = {{10, 10, false},   {11, 11, true},      {189, 289, true},
                              {190, 290, false}, {most, most, false}, {least, least, false}};
    for (const auto& [x, y, inside] : cases) {
        EXPECT_EQ(isInside(state, x, 150, 10), inside) << x;
        EXPECT_EQ(isInside(state, 100, y, 10), inside) << y;
    }
    applySettings(state, least, least, false);
    EXPECT_FALSE(isInside(state, 0, 0, 60));
    EXPECT_EQ(flippedY(state.screenHeight, most), -4294967295);
}

}  // namespace
}  // namespace velmora::test
