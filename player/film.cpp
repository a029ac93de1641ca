#include "player/film.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "app/size.h"
#include "desktop/image.h"

namespace player {

using desktop::drawScaled;
using desktop::plainImage;
using desktop::savePng;

namespace {

constexpr int maxStills = 12;
constexpr int maxThumbnailSide = 480;
constexpr int gap = 6;
constexpr std::uint8_t gapShade = 255;

/// Divides all frames into equal parts and returns the number of the middle frame of each part.
std::vector<int> evenlySpaced(int frameCount) {
    const int count = std::min(frameCount, maxStills);
    std::vector<int> frames;
    for (int still = 0; still < count; ++still) {
        frames.push_back(static_cast<int>((2L * still + 1) * frameCount / (2L * count)));
    }
    return frames;
}

int thumbnailSide(int side, int maxSide) {
    const double scale = std::min(1.0, static_cast<double>(maxThumbnailSide) / maxSide);
    return std::max(1, static_cast<int>(std::lround(side * scale)));
}

}  // namespace

Film::Film(std::filesystem::path workFolder, std::filesystem::path targetFolder,
           const std::string& format, app::Size size, int frameCount, float timeScale,
           int framesPerSecond)
    : folder(std::move(workFolder)),
      target(std::move(targetFolder)),
      stillFrames(evenlySpaced(frameCount)),
      framesPerFilmFrame(static_cast<double>(timeScale) * 60.0 / framesPerSecond),
      columns(std::min(static_cast<int>(stillFrames.size()), size.width < size.height ? 6 : 3)),
      thumbnailWidth(thumbnailSide(size.width, std::max(size.width, size.height))),
      thumbnailHeight(thumbnailSide(size.height, std::max(size.width, size.height))),
      encoder(folder / ("film." + format), target / ("film." + format), size, framesPerSecond) {
    const int rows = (static_cast<int>(stillFrames.size()) + columns - 1) / columns;
    sheet = plainImage(columns * (thumbnailWidth + gap) - gap, rows * (thumbnailHeight + gap) - gap,
                       gapShade);
}

void Film::add(const hostkit::Image& frame) {
    for (; static_cast<double>(filmFrames) * framesPerFilmFrame < framesDone + 1; ++filmFrames) {
        encoder.add(frame);
    }
    if (stillsDone < stillFrames.size() && stillFrames[stillsDone] == framesDone) {
        addStill(frame);
    }
    ++framesDone;
}

void Film::addStill(const hostkit::Image& frame) {
    const int place = static_cast<int>(stillsDone);
    drawScaled(frame, sheet, place % columns * (thumbnailWidth + gap),
               place / columns * (thumbnailHeight + gap), thumbnailWidth, thumbnailHeight);
    char name[32];
    std::snprintf(name, sizeof name, "frame-%02d.png", place + 1);
    save(frame, name);
    ++stillsDone;
}

void Film::finish() {
    save(sheet, "sheet.png");
    encoder.finish();
}

void Film::save(const hostkit::Image& image, const std::string& name) const {
    savePng(image, folder / name, target / name);
}

}  // namespace player
