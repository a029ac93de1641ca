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
/// Cells between neighbouring mesh vertices at full detail. The structural similarity with frames of the finest mesh is
/// at least 0.99 for the shipped gestures (velmora-bench-mesh).
constexpr float fullDetail = 1.75f;
constexpr float fullDetailOfManyPixels = 2.0f;
/// Minimum numbers of pixels along the shorter side for these numbers. A smaller screen is fast with the finest mesh.
constexpr int somePixels = 360;
constexpr int manyPixels = 1000;
/// Minimum number of cells along the shorter side for a coarser mesh. Each larger cell needs a vertex.
constexpr int manyCells = 90;
/// Number of frames in a span during a search.
constexpr std::size_t searchFrames = 6;
/// Number of frames to skip after a change, until its effect shows in the intervals.
constexpr int framesToSettle = 2;
/// Intervals in milliseconds that separate slow, acceptable and fluent frames. With an acceptable interval, such as on
/// a 50 Hz display, the level stays.
constexpr double slowInterval = 1000.0 / 49.0;
constexpr double fluentInterval = 1000.0 / 52.0;

/// Returns the number of cells between neighbouring mesh vertices at full detail.
float fullDetailOf(int shortSideCells, int shortSidePixels) {
    if (shortSideCells < manyCells || shortSidePixels < somePixels) {
        return 1.0f;
    }
    return shortSidePixels < manyPixels ? fullDetail : fullDetailOfManyPixels;
}

const QualityLevel& levelAt(int level) {
    return qualityLevels[static_cast<std::size_t>(level)];
}

/// Returns the mean interval of the span without the slowest eighth, so that a hitch does not count. A median would not
/// work: intervals are multiples of the refresh interval, so the median jumps between multiples.
double typicalInterval(Quality quality) {
    const auto begin = quality.span.begin();
    std::sort(begin, begin + static_cast<std::ptrdiff_t>(quality.spanLength));
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
    quality.span[quality.spanLength] = interval;
    ++quality.spanLength;
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
