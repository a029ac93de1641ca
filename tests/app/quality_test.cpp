// Tests the adaptive quality. All frame intervals are in milliseconds.

#include "app/quality.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/instruments/frame_similarity.h"
#include "paintings/paintings.h"

namespace {

using app::Quality;
using app::QualityPhase;

/// Returns the state of the adaptive quality after one measurement. The measured frames have the given intervals, one
/// after the other, repeated as often as needed. The first two frames of a measurement do not count.
Quality afterSpan(Quality quality, const std::vector<double>& intervals) {
    const int frames = quality.phase == QualityPhase::searching ? 6 : 24;
    quality = next(next(quality, 300.0), 300.0);
    for (int frame = 0; frame < frames; ++frame) {
        quality = next(quality, intervals[static_cast<std::size_t>(frame) % intervals.size()]);
    }
    return quality;
}

/// Returns the quality level after each of several measurements. All frames of a measurement have the same interval.
std::vector<int> levels(Quality& quality, const std::vector<double>& intervals) {
    std::vector<int> seen;
    for (const double interval : intervals) {
        quality = afterSpan(quality, {interval});
        seen.push_back(quality.level);
    }
    return seen;
}

Quality watching() {
    return afterTouch(app::searchingQuality());
}

using Levels = std::vector<int>;

TEST(Quality, DetailDecreasesInSlowSpansAndIncreasesAfterManyFluentSpans) {
    Quality quality = watching();
    EXPECT_EQ(levels(quality, {60, 50, 40}), (Levels{1, 2, 2}));
    levels(quality, std::vector<double>(11, 18.0));
    EXPECT_EQ(quality.level, 2);
    EXPECT_EQ(levels(quality, {18}), Levels{1});
    levels(quality, std::vector<double>(12, 18.0));
    EXPECT_EQ(quality.level, 0);
}

TEST(Quality, AnIncreaseThatWasTooMuchDoublesThePatience) {
    Quality quality = watching();
    levels(quality, {30});
    levels(quality, std::vector<double>(12, 18.0));
    EXPECT_EQ(levels(quality, {30}), Levels{1});
    levels(quality, std::vector<double>(23, 18.0));
    EXPECT_EQ(quality.level, 1);
    EXPECT_EQ(levels(quality, {18}), Levels{0});
}

TEST(Quality, StaysOnAFiftyHertzDisplayAndThroughHitches) {
    Quality quality = watching();
    levels(quality, std::vector<double>(50, 20.0));
    EXPECT_EQ(quality.level, 0);
    quality = afterSpan(quality, {16.7, 16.7, 16.7, 16.7, 16.7, 16.7, 16.7, 232.0});
    EXPECT_EQ(quality.level, 0);
    quality = afterSpan(quality, {16.7, 16.7, 33.3});  // 45 frames a second
    EXPECT_EQ(quality.level, 1);
}

TEST(Quality, ASearchEndsAtTheFirstFluentLevelOrWhenFewerPixelsDoNotHelp) {
    const struct {
        std::vector<double> intervals;
        Levels expected;
    } cases[] = {
        {{60, 50, 40}, {1, 2, 2}},
        {{100, 90, 80}, {1, 2, 1}},       // fewer pixels save too little time
        {{33.3, 33.3, 33.3}, {1, 2, 1}},  // a display with 30 Hz
        {{16.7}, {0}},
    };
    for (const auto& [intervals, expected] : cases) {
        Quality quality = app::searchingQuality();
        EXPECT_EQ(levels(quality, intervals), expected);
        EXPECT_EQ(quality.phase, QualityPhase::watching);
    }
}

TEST(Quality, AFixedLevelStays) {
    Quality quality = app::fixedQuality(2);
    levels(quality, {60, 60, 16, 16});
    EXPECT_EQ(quality.level, 2);
    EXPECT_EQ(pixelsOf(quality), 0.75);
    EXPECT_EQ(cellsPerVertex(quality, 90, 540), 3);
    EXPECT_EQ(cellsPerVertex(quality, 45, 540), 1.5f)
        << "the mesh must keep 30 vertices along the shorter side";
    EXPECT_EQ(cellsPerVertex(quality, 24, 540), 1)
        << "a coarse water grid must keep a vertex for each cell";
}

TEST(Quality, FullDetailDependsOnTheScreen) {
    const Quality full = app::fixedQuality(0);
    EXPECT_EQ(cellsPerVertex(full, 90, 359), 1);
    EXPECT_GT(cellsPerVertex(full, 90, 360), 1) << "a medium screen must have a coarser mesh";
    EXPECT_GT(cellsPerVertex(full, 90, 1000), cellsPerVertex(full, 90, 999));
    EXPECT_EQ(cellsPerVertex(full, 89, 1080), 1)
        << "if the shorter side has fewer than 90 cells, each cell must keep its own vertex";
    EXPECT_EQ(cellsPerVertex(app::fixedQuality(1), 90, 1080), 3);
}

TEST(Quality, FramesAtFullDetailLookLikeFramesOfTheFinestMesh) {
    constexpr int width = 540;
    constexpr int height = 960;
    app::Settings settings;
    settings.waterOnly = true;
    const hostkit::GestureScript script = scaledToScreen(
        hostkit::loadGestureScript(VELMORA_GESTURES "/scribble.gesture"), width, height);
    const auto frames = [&](float cellsPerVertex) {
        hostkit::EffectHostOptions options = app::hostOptions(settings, width, height);
        options.water.cellsPerVertex = cellsPerVertex;
        options.background = paintings::paintSand(width, height);
        return playedFrames(std::move(options), script);
    };
    const float fullDetail = cellsPerVertex(app::fixedQuality(0), settings.meshDetail, width);
    EXPECT_GE(lowestSimilarity(frames(fullDetail), frames(1.0f)), 0.99)
        << "the structural similarity (SSIM) must be at least 0.99";
}

}  // namespace
