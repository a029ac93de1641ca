#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "app/size.h"
#include "hostkit/image.h"
#include "player/encoder.h"

namespace player {

/// Output files of a run without a window: film.mp4 (or .webm, .gif), still frames frame-01.png, frame-02.png and so
/// on, and a contact sheet of all stills, sheet.png.
class Film {
public:
    /// Starts a film of `frameCount` frames of the effect, which have the given size. Each of these frames lasts 1 /
    /// (60 * `timeScale`) seconds. The film shows `framesPerSecond` frames per second. Writes all files to the
    /// temporary folder `folder`. The caller moves the complete files to the folder `target`, so error messages name
    /// the files in `target`. All members throw Failure.
    Film(std::filesystem::path folder, std::filesystem::path target, const std::string& format,
         app::Size size, int frameCount, float timeScale, int framesPerSecond);

    void add(const hostkit::Image& frame);
    void finish();

    /// Returns the numbers of the still frames, evenly spaced over all frames.
    const std::vector<int>& stills() const { return stillFrames; }

private:
    void addStill(const hostkit::Image& frame);
    void save(const hostkit::Image& image, const std::string& name) const;

    std::filesystem::path folder;
    std::filesystem::path target;
    std::vector<int> stillFrames;
    std::size_t stillsDone = 0;
    int framesDone = 0;
    /// Number of frames of the effect per frame of the film.
    double framesPerFilmFrame;
    std::int64_t filmFrames = 0;
    int columns;
    int thumbnailWidth;
    int thumbnailHeight;
    hostkit::Image sheet;
    Encoder encoder;
};

}  // namespace player
