#pragma once

#include <filesystem>
#include <vector>

#include "hostkit/picture.h"
#include "player/encoder.h"

namespace player {

/// What a run leaves to look at: film.mp4, some frames as frame-01.png and so on, and all of those
/// on one contact sheet, sheet.png.
class Film {
public:
    /// `frameCount` frames of the given size will follow. Throws Failure, as all members do.
    Film(std::filesystem::path folder, int width, int height, int frameCount);

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
    int columns;
    int thumbnailWidth;
    int thumbnailHeight;
    hostkit::Picture sheet;
    Encoder encoder;
};

}  // namespace player
