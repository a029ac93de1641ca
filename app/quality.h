#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>

namespace app {

/// A level of detail.
struct QualityLevel {
    /// Wanted number of cells between neighbouring mesh vertices. The function `cellsPerVertex` adapts this number to
    /// the screen and to the grid.
    int cellsPerVertex;
    /// Resolution along each side, as a fraction of the full resolution.
    double pixels;
};
/// Levels of detail, from full detail to least detail.
inline constexpr QualityLevel qualityLevels[] = {{1, 1.0}, {3, 1.0}, {3, 0.75}};
constexpr int maxQualityLevel = static_cast<int>(std::size(qualityLevels)) - 1;

/// Phase of the adaptive quality.
enum class QualityPhase {
    /// The level does not change.
    fixed,
    /// The level changes after short spans of frames. A touch ends this phase, because a visible change would then
    /// disturb the user.
    searching,
    /// The level changes only after longer spans of frames.
    watching
};

/// State of the adaptive quality, which lowers the detail on slow machines, because slow frames are worse than coarse
/// waves. The functions have no side effects and return the next state. Times are in milliseconds.
struct Quality {
    /// Maximum number of frames in a span. A span is a group of frames whose intervals are judged together.
    static constexpr std::size_t spanFrames = 24;

    QualityPhase phase = QualityPhase::fixed;
    /// Index of the current level in `qualityLevels`; 0 is full detail.
    int level = 0;
    /// Maximum level (the least detail) to use on this machine. This maximum decreases if a lower resolution did not
    /// make the frames faster.
    int lastLevel = maxQualityLevel;
    /// True if the last change of the level increased the detail.
    bool raised = false;
    /// Number of consecutive fluent spans.
    int fluentSpans = 0;
    /// Number of consecutive fluent spans after which the detail is increased.
    int patience = 12;
    /// Frame interval before the resolution was lowered. Has a value only while a lower resolution is being tried.
    std::optional<double> intervalBeforeTrial;

    /// Intervals of the current span in ascending order.
    std::array<double, spanFrames> span{};
    std::size_t spanLength = 0;
    /// Number of frames to skip before the next span starts.
    int framesToSkip = 2;
};

/// Returns a state whose level never changes.
Quality fixedQuality(int level);
/// Returns a state that searches for the right level and starts at full detail.
Quality searchingQuality();
/// Returns the state after a frame. `interval` is the time since the previous frame in milliseconds.
Quality next(Quality quality, double interval);
/// Returns the state after a pause between frames, for example an idle time. Starts a new span.
Quality afterGap(Quality quality);
/// Returns the state after a touch. A touch ends a search.
Quality afterTouch(Quality quality);

/// Returns the number of cells between neighbouring mesh vertices. The mesh keeps a minimum number of vertices. On a
/// medium or large screen, full detail has more than one cell per vertex, because finer meshes look the same.
/// @param quality state of the adaptive quality
/// @param shortSideCells number of cells along the shorter side of the screen
/// @param shortSidePixels number of pixels along the shorter side of the screen
float cellsPerVertex(const Quality& quality, int shortSideCells, int shortSidePixels);
/// Returns the factor by which the quality scales the width and the height of the drawn image, at most 1.
double pixelsOf(const Quality& quality);

}  // namespace app
