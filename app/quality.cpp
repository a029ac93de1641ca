#include "app/quality.h"

#include <algorithm>
#include <numeric>

namespace app {
namespace {

/// Maximum interval after a reduction of pixels, as a fraction of the interval before it. A smaller gain is not worth
/// the blur, which is visible even in a static image.
constexpr double maxIntervalRatio = 0.85;
/// Minimum number of mesh vertices along the shorter side.
constexpr int minVertices = 30;
/// Minimum numbers of cells and of pixels along the shorter side at which a vertex on every second cell is full detail.
/// The structural similarity with frames of the finest mesh is then at least 0.99 for the shipped gestures
/// (velmora-bench-mesh).
constexpr int minCellsToSkip = 90;
constexpr int minPixelsToSkip = 1000;
/// Number of frames in a span during a search.
constexpr std::size_t searchFrames = 6;
/// Number of frames to skip after a change, until its effect shows in the intervals.
constexpr int framesToSettle = 2;
/// Intervals in milliseconds that separate slow, acceptable and fluent frames. With an acceptable interval, such as on
/// a 50 Hz display, the level stays.
constexpr double slowInterval = 1000.0 / 49.0;
constexpr double fluentInterval = 1000.0 / 52.0;

const QualityLevel& levelAt(int level) {
    return qualityLevels[static_cast<std::size_t>(level)];
}

/// Inserts an interval into the span, which stays sorted.
void insert(Quality& quality, double interval) {
    const auto end = quality.span.begin() + static_cast<std::ptrdiff_t>(quality.spanLength);
    const auto place = std::upper_bound(quality.span.begin(), end, interval);
    std::copy_backward(place, end, end + 1);
    *place = interval;
    ++quality.spanLength;
}

/// Returns the mean interval of the span without the slowest eighth, so that a hitch does not count. A median would not
/// work: intervals are multiples of the refresh interval, so the median jumps between multiples.
double typicalInterval(const Quality& quality) {
    const auto begin = quality.span.begin();
    const std::size_t counted = quality.spanLength - (quality.spanLength + 7) / 8;
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(counted), 0.0) /
           static_cast<double>(counted);
}

/// Ends a search or a trial.
Quality settled(Quality quality) {
    quality.phase = QualityPhase::watching;
    quality.intervalBeforeTrial.reset();
    return quality;
}

/// Undoes a reduction of pixels that did not help. The display is slow, or the time is not spent on pixels.
Quality endTrial(Quality quality) {
    --quality.level;
    quality.lastLevel = quality.level;
    return settled(quality);
}

/// Reduces the detail after a slow span.
Quality lower(Quality quality, double interval) {
    quality.fluentSpans = 0;
    const bool canLower = quality.level < std::min(quality.lastLevel, maxQualityLevel);
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

/// Counts fluent spans and increases the detail after enough of them.
Quality raise(Quality quality, double interval) {
    quality.fluentSpans = interval < fluentInterval ? quality.fluentSpans + 1 : 0;
    if (quality.level > 0 && quality.fluentSpans >= quality.patience) {
        --quality.level;
        quality.fluentSpans = 0;
        quality.raised = true;
    }
    return quality;
}

/// Changes the level after a span with this typical interval.
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

int cellsPerVertex(const Quality& quality, int shortSideCells, int shortSidePixels) {
    const bool canSkip = shortSideCells >= minCellsToSkip && shortSidePixels >= minPixelsToSkip;
    const int wanted = std::max(canSkip ? 2 : 1, levelAt(quality.level).cellsPerVertex);
    return std::max(1, std::min(wanted, shortSideCells / minVertices));
}

double pixelsOf(const Quality& quality) {
    return levelAt(quality.level).pixels;
}

}  // namespace app
