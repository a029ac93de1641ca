#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "player/draw/overlays.h"

namespace player {

/// Values of the command line.
struct Options {
    /// First background. Empty: a wallpaper of the desktop.
    std::filesystem::path image;
    /// Second background. Empty: a wallpaper of the desktop.
    std::filesystem::path second;
    std::filesystem::path script;
    std::filesystem::path out = "out";
    /// Folder for the window's screenshots, films, recordings and presets.
    std::filesystem::path shots = "shots";
    /// Empty: the default settings.
    std::filesystem::path preset;
    /// File of a recording that starts with the window. Empty: no recording.
    std::filesystem::path record;
    /// Screen size in pixels. A software rasteriser films the default size in one or two minutes.
    int width = 720;
    int height = 1280;
    /// Number of frames to draw. 0: the length of the script.
    int frames = 0;
    /// Duration of the film. 0: the length of the script.
    double seconds = 0.0;
    /// Frames per second of a film without a window. 0: 60, or 25 for a GIF.
    int framesPerSecond = 0;
    /// Format of films: mp4, webm or gif.
    std::string format = "mp4";
    /// Scale of the window's text. 0: the scale of the display.
    double fontScale = 0.0;
    bool scriptGiven = false;
    bool outGiven = false;
    bool sizeGiven = false;
    bool headless = false;
    bool noAttract = false;
    /// True to start with the default settings and window size. The files with the settings and the size of the last
    /// window are neither read nor written.
    bool fresh = false;
    bool waterOnly = false;
    bool digest = false;
    Overlays overlays;
};

/// Returns the options of the command line. Prints help or the version on request and returns nothing then.
/// Throws Failure.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace player
