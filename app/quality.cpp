#include "app/quality.h"

#include <algorithm>
#include <numeric>

namespace app {
namespace {

/// Maximum ratio of the frame interval at a lower resolution to the frame interval before the resolution was lowered.
/// If the ratio is larger, the resolution is raised again, because the small gain in speed does not justify the blur.
constexpr double maxIntervalRatio = 0.85;
/// Minimum number of mesh vertices along the shorter side of the screen.
constexpr int minVertices = 30;
/// Numbers of cells between neighbouring mesh vertices at full detail. They apply to screens that have at least
/// minMediumPixels and minLargePixels, respectively, along the shorter side. For the shipped gestures, the structural
/// similarity to frames of the finest mesh is then at least 0.99 (measured by velmora-bench-mesh). Smaller screens use
/// the finest mesh, because they are fast enough with it.
constexpr float cellsPerVertexOfMedium = 1.75f;
constexpr float cellsPerVertexOfLarge = 2.0f;
constexpr int minMediumPixels = 360;
constexpr int minLargePixels = 1000;
/// Minimum number of cells along the shorter side of the screen for more than one cell per vertex at full detail. Fewer
/// cells are larger, and each of them needs its own vertex.
constexpr int minCells = 90;
/// Number of frames in a span during the search for the right level. A span is a group of frames that are judged
/// together.
constexpr std::size_t searchFrames = 6;
/// Number of frames to skip after a change of the level. Later frame intervals show the effect of the change.
constexpr int framesToSettle = 2;
/// Frame intervals in milliseconds. Frames are slow above slowInterval and fluent below fluentInterval. In between, for
/// example on a 50 Hz display, the level does not change.
constexpr double slowInterval = 1000.0 / 49.0;
constexpr double fluentInterval = 1000.0 / 52.0;

/// Returns the number of cells between neighbouring mesh vertices at full detail.
float fullDetailOf(int shortSideCells, int shortSidePixels) {
    if (shortSideCells < minCells || shortSidePixels < minMediumPixels) {
        return 1.0f;
    }
    return shortSidePixels < minLargePixels ? cellsPerVertexOfMedium : cellsPerVertexOfLarge;
}

const QualityLevel& levelAt(int level) {
    return qualityLevels[static_cast<std::size_t>(level)];
}

/// Inserts an interval into the span, which stays sorted. std::sort would add two kilobytes to the module for browsers.
void insert(Quality& quality, double interval) {
    const auto end = quality.span.begin() + static_cast<std::ptrdiff_t>(quality.spanLength);
    const auto place = std::upper_bound(quality.span.begin(), end, interval);
    std::copy_backward(place, end, end + 1);
    *place = interval;
    ++quality.spanLength;
}

/// Returns the mean of the frame intervals in the span, except the longest eighth. A single slow frame therefore does
/// not count. A median would be worse: intervals are multiples of the display's refresh interval, so the median would
/// jump between multiples.
double typicalInterval(const Quality& quality) {
    const auto begin = quality.span.begin();
    const std::size_t counted = quality.spanLength - (quality.spanLength + 7) / 8;
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(counted), 0.0) /
           static_cast<double>(counted);
}

/// Ends a search and the trial of a lower resolution.
Quality settled(Quality quality) {
    quality.phase = QualityPhase::watching;
    quality.intervalBeforeTrial.reset();
    return quality;
}

/// Returns to the higher resolution, because the lower resolution did not make the frames much faster. Possible causes
/// are a slow display, or work whose time does not depend on the resolution.
Quality endTrial(Quality quality) {
    --quality.level;
    quality.lastLevel = quality.level;
    return settled(quality);
}

/// Reduces the detail after a span of slow frames, if a lower level of detail is allowed.
Quality lower(Quality quality, double interval) {
    quality.fluentSpans = 0;
    const bool canLower = quality.level < quality.lastLevel;
    if (canLower) {
        const double pixels = levelAt(quality.level).pixels;
        ++quality.level;
        quality.intervalBeforeTrial =
            levelAt(quality.level).pixels < pixels ? std::optional(interval) : std::nullopt;
        quality.patience *= quality.raised ? 2 : 1;  // the machine could not keep the higher detail
    } else {
        quality = settled(quality);
    }
    quality.raised = false;
    return quality;
}

/// Counts spans of fluent frames and increases the detail after enough of them.
Quality raise(Quality quality, double interval) {
    quality.fluentSpans = interval < fluentInterval ? quality.fluentSpans + 1 : 0;
    if (quality.level > 0 && quality.fluentSpans >= quality.patience) {
        --quality.level;
        quality.fluentSpans = 0;
        quality.raised = true;
    }
    return quality;
}

/// Chooses the level after a span whose typical frame interval is `interval`.
Quality judge(const Quality& quality, double interval) {
    if (quality.intervalBeforeTrial && interval > *quality.intervalBeforeTrial * maxIntervalRatio) {
        return endTrial(quality);
    }
    return interval > slowInterval ? lower(quality, interval) : raise(settled(quality), interval);
}

}  // namespace

Quality fixedQuality(int level) {
    Quality quality;
    quality.level = std::clamp(level, 0, maxQualityLevel);
    return quality;
}

Quality searchingQuality() {
    Quality quality;
    quality.phase = QualityPhase::searching;
    return quality;
}

Quality next(Quality quality, double interval) {
    if (quality.phase == QualityPhase::fixed) {
        return quality;
    }
    if (quality.framesToSkip > 0) {
        --quality.framesToSkip;
        return quality;
    }
    insert(quality, interval);
    const bool searching = quality.phase == QualityPhase::searching;
    if (quality.spanLength < (searching ? searchFrames : Quality::spanFrames)) {
        return quality;
    }
    return judge(afterGap(quality), typicalInterval(quality));
}

Quality afterGap(Quality quality) {
    quality.spanLength = 0;
    quality.framesToSkip = framesToSettle;
    return quality;
}

Quality afterTouch(Quality quality) {
    if (quality.phase == QualityPhase::searching) {
        quality.phase = QualityPhase::watching;
    }
    return quality;
}

float cellsPerVertex(const Quality& quality, int shortSideCells, int shortSidePixels) {
    const auto ofLevel = static_cast<float>(levelAt(quality.level).cellsPerVertex);
    const float wanted = std::max(fullDetailOf(shortSideCells, shortSidePixels), ofLevel);
    const float most = static_cast<float>(shortSideCells) / minVertices;
    return std::max(1.0f, std::min(wanted, most));
}

double pixelsOf(const Quality& quality) {
    return levelAt(quality.level).pixels;
}

}  // namespace app
