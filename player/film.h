#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "app/size.h"
#include "hostkit/picture.h"
#include "player/encoder.h"

namespace player {

/// What a run leaves to look at: film.mp4 (or .webm, .gif), some frames as frame-01.png and so on, and all of those
/// on one contact sheet, sheet.png.
class Film {
public:
    /// `frameCount` frames of the given size will follow. Each shows for a 60th of a second divided
    /// by `timeScale`. Throws Failure, as all members do.
    Film(std::filesystem::path folder, const std::string& format, app::Size size, int frameCount,
         float timeScale);

    void add(const hostkit::Picture& frame);
    void finish();

    /// Numbers of the frames kept as pictures, evenly spaced over the run.
    const std::vector<int>& stills() const { return stillFrames; }

private:
    void addStill(const hostkit::Picture& frame);

    std::filesystem::path folder;
    std::vector<int> stillFrames;
    std::size_t stillsDone = 0;
    int framesDone = 0;
    double timeScale;
    std::int64_t filmFrames = 0;
    int columns;
    int thumbnailWidth;
    int thumbnailHeight;
    hostkit::Picture sheet;
    Encoder encoder;
};

}  // namespace player
