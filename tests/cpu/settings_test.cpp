#include <initializer_list>
#include <utility>
#include <vector>

#include "base/saturate.h"
#include "base/screen.h"
#include "effect/effect_state.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

std::vector<unsigned char> bytesOf(const EffectState& state) {
    const auto* begin = reinterpret_cast<const unsigned char*>(&state);
    return {begin, begin + sizeof state};
}

TEST(Settings, IfInkIsDisabledChangeOnlySizeAndColour) {
    EffectState state;
    applySettings(state, 540, 960, true);
    state.inkColorOffset = 0.5f;
    state.quadBuffer = state.waterTexture = 9;
    state.inkColor = {0.1f, 0.2f, 0.3f};
    auto expected = bytesOf(state);
    applySettings(state, 1080, 1920, false);
    EXPECT_EQ((std::pair{state.screenWidth, state.screenHeight}), (std::pair{1080, 1920}));
    EXPECT_TRUE(state.inkColor.r == 1.0f && state.inkColor.g == 1.0f && state.inkColor.b == 1.0f);
    state.screenWidth = 540;
    state.screenHeight = 960;
    state.inkColor = {0.1f, 0.2f, 0.3f};
    EXPECT_EQ(bytesOf(state), expected);
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
    EXPECT_FALSE(isInside(state, 100, 100, 60));
    EXPECT_EQ(flippedY(state.screenHeight, most), -4294967295);
}

TEST(Saturate, ClampsToTheRangeOfInt) {
    for (const float beyond : {2147483648.0f, 1e30f, infinity}) {
        EXPECT_EQ(saturatedInt(beyond), most);
        EXPECT_EQ(saturatedInt(-beyond), least);
    }
    EXPECT_EQ(saturatedInt(-3.0f), -3);
}

}  // namespace
}  // namespace velmora::test
