#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace app {

/// Amount of detail that is drawn.
struct QualityLevel {
    /// Cells of the water between neighbours of the drawn mesh.
    int cellsPerVertex;
    /// Part of the pixels along a side of the screen.
    double pixels;
};
inline constexpr QualityLevel qualityLevels[] = {{1, 1.0}, {2, 1.0}, {3, 1.0}, {3, 0.75}};
constexpr int maxQualityLevel = 3;

enum class QualityPhase {
    /// The level stays as it is.
    fixed,
    /// Looks for the machine's level in short spans of frames: before the first touch a change disturbs nobody.
    searching,
    /// Follows the machine in longer spans.
    watching
};

/// Adaptive quality: fits the detail to the machine, since slow frames are worse than waves drawn a little coarser.
/// A state machine without side effects; each function returns the next state. Times are in milliseconds.
struct Quality {
    static constexpr std::size_t spanFrames = 24;

    QualityPhase phase = QualityPhase::fixed;
    /// In qualityLevels: 0 is all detail.
    int level = 0;
    /// Last level worth choosing on this machine.
    int lastLevel = maxQualityLevel;
    /// The level was raised and has not been lowered since.
    bool raised = false;
    /// Spans of fluent frames in a row, and as many as it takes before the level is raised.
    int fluentSpans = 0;
    int patience = 12;
    /// Interval of frames before a step to fewer pixels, while that step is on trial.
    std::optional<double> intervalBeforeTrial;

    /// Intervals of the current span, and the frames to pass over before it.
    std::array<double, spanFrames> span{};
    std::size_t spanLength = 0;
    int framesToSkip = 2;
};

/// Returns a state that keeps the level.
Quality fixedQuality(int level);
/// Returns a state with all detail that searches for the machine's level.
Quality searchingQuality();
/// Returns the state after an interval from frame to frame.
Quality next(Quality quality, double interval);
/// Returns the state after a gap in the frames, such as a rest. The next frames start a new span.
Quality afterGap(Quality quality);
/// Returns the state once the user has come: a search ends.
Quality afterTouch(Quality quality);

/// Returns the distance between neighbours of the drawn mesh for water of so many cells along its shorter side. A mesh
/// never gets coarser than a minimum.
int cellsPerVertex(const Quality& quality, int shortSideCells);
/// Returns the part of the pixels along a side of the screen.
double pixelsOf(const Quality& quality);

}  // namespace app
