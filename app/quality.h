#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace app {

/// A level of detail.
struct QualityLevel {
    /// Cells between neighbouring mesh vertices.
    int cellsPerVertex;
    /// Resolution along each side, as a fraction of the full resolution.
    double pixels;
};
/// Levels from full detail to least detail.
inline constexpr QualityLevel qualityLevels[] = {{1, 1.0}, {2, 1.0}, {3, 1.0}, {3, 0.75}};
constexpr int maxQualityLevel = 3;

/// Phase of the adaptive quality.
enum class QualityPhase {
    /// The level does not change.
    fixed,
    /// Short spans of frames find the level quickly. Used before the first touch, when a change is not disturbing.
    searching,
    /// Longer spans of frames adapt the level slowly.
    watching
};

/// State of the adaptive quality. It adapts the detail to the speed of the machine, because slow frames are worse than
/// coarser waves. The functions have no side effects and return the next state. Times are in milliseconds.
struct Quality {
    /// Maximum number of frames in a span.
    static constexpr std::size_t spanFrames = 24;

    QualityPhase phase = QualityPhase::fixed;
    /// Index in `qualityLevels`; 0 is full detail.
    int level = 0;
    /// Highest index to use on this machine. It decreases if a reduction of pixels did not help.
    int lastLevel = maxQualityLevel;
    /// True if the last change of the level increased the detail.
    bool raised = false;
    /// Number of consecutive fluent spans.
    int fluentSpans = 0;
    /// Number of consecutive fluent spans after which the detail increases.
    int patience = 12;
    /// Interval before the last reduction of pixels. Empty unless the reduction is on trial.
    std::optional<double> intervalBeforeTrial;

    /// Intervals of the current span in ascending order.
    std::array<double, spanFrames> span{};
    std::size_t spanLength = 0;
    /// Number of frames to skip before the span.
    int framesToSkip = 2;
};

/// Returns a state with a fixed level.
Quality fixedQuality(int level);
/// Returns a state that searches for the level, starting at full detail.
Quality searchingQuality();
/// Returns the state after a frame. `interval` is the time since the previous frame.
Quality next(Quality quality, double interval);
/// Returns the state after a pause between frames, such as an idle time. A new span starts.
Quality afterGap(Quality quality);
/// Returns the state after a touch, which ends a search.
Quality afterTouch(Quality quality);

/// Returns the number of cells between neighbouring mesh vertices. The mesh keeps a minimum number of vertices. On a
/// screen with many pixels, a vertex on every second cell is full detail: finer meshes look the same.
/// @param quality state of the adaptive quality
/// @param shortSideCells number of cells along the shorter side of the screen
/// @param shortSidePixels number of pixels along the shorter side of the screen
int cellsPerVertex(const Quality& quality, int shortSideCells, int shortSidePixels);
/// Returns the resolution along each side, as a fraction of the full resolution.
double pixelsOf(const Quality& quality);

}  // namespace app
