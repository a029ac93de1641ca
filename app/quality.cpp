#include "app/quality.h"

#include <algorithm>
#include <numeric>

namespace app {
namespace {

/// Fewer pixels show even where nothing moves. They stay only if frames then take at most this part of the time.
constexpr double worthFewerPixels = 0.85;
/// Vertices along the shorter side that a coarser mesh keeps.
constexpr int minVertices = 30;
/// Frames of a span during a search.
constexpr std::size_t searchFrames = 6;
/// Frames after a change that wait for its effects.
constexpr int framesOfChange = 2;
/// Intervals above are slow and intervals below are fluent. Between the two, as on a display of 50 a second, the level
/// stays.
constexpr double slowInterval = 1000.0 / 49.0;
constexpr double fluentInterval = 1000.0 / 52.0;

const QualityLevel& levelAt(int level) {
    return qualityLevels[static_cast<std::size_t>(level)];
}

/// Returns the mean without the slowest eighth, so that a hitch does not count. A display shows frames only at its own
/// beats, and a median would leap from one beat to the next.
double usualInterval(Quality quality) {
    const auto begin = quality.span.begin();
    std::sort(begin, begin + static_cast<std::ptrdiff_t>(quality.spanLength));
    const std::size_t counted = quality.spanLength - (quality.spanLength + 7) / 8;
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(counted), 0.0) /
           static_cast<double>(counted);
}

Quality settled(Quality quality) {
    quality.phase = QualityPhase::watching;
    quality.intervalBeforeTrial.reset();
    return quality;
}

/// Takes back a step to fewer pixels: the display is slow, or something other than pixels takes the time.
Quality endTrial(Quality quality) {
    --quality.level;
    quality.lastLevel = quality.level;
    return settled(quality);
}

Quality lower(Quality quality, double interval) {
    quality.fluentSpans = 0;
    const bool canLower = quality.level < std::min(quality.lastLevel, maxQualityLevel);
    if (canLower) {
        const double pixels = levelAt(quality.level).pixels;
        ++quality.level;
        quality.intervalBeforeTrial =
            levelAt(quality.level).pixels < pixels ? std::optional(interval) : std::nullopt;
        quality.patience *= quality.raised ? 2 : 1;  // the raise was too much
    } else {
        quality = settled(quality);
    }
    quality.raised = false;
    return quality;
}

Quality raise(Quality quality, double interval) {
    quality.fluentSpans = interval < fluentInterval ? quality.fluentSpans + 1 : 0;
    if (quality.level > 0 && quality.fluentSpans >= quality.patience) {
        --quality.level;
        quality.fluentSpans = 0;
        quality.raised = true;
    }
    return quality;
}

Quality judge(const Quality& quality, double interval) {
    if (quality.intervalBeforeTrial && interval > *quality.intervalBeforeTrial * worthFewerPixels) {
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
    return judge(afterGap(quality), usualInterval(quality));
}

Quality afterGap(Quality quality) {
    quality.spanLength = 0;
    quality.framesToSkip = framesOfChange;
    return quality;
}

Quality afterTouch(Quality quality) {
    if (quality.phase == QualityPhase::searching) {
        quality.phase = QualityPhase::watching;
    }
    return quality;
}

int cellsPerVertex(const Quality& quality, int shortSideCells) {
    return std::max(1,
                    std::min(levelAt(quality.level).cellsPerVertex, shortSideCells / minVertices));
}

double pixelsOf(const Quality& quality) {
    return levelAt(quality.level).pixels;
}

}  // namespace app
