#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "player/draw/overlays.h"

namespace player {

/// Values of the command line.
struct Options {
    /// File of the first background. If empty, the first painting is used.
    std::filesystem::path image;
    /// File of the second background. If empty, the second painting is used.
    std::filesystem::path second;
    std::filesystem::path script;
    std::filesystem::path out = "out";
    /// Folder for the window's screenshots, films, recordings and presets.
    std::filesystem::path shots = "shots";
    /// File of the preset. If empty, the window uses its last settings; a film uses the default settings.
    std::filesystem::path preset;
    /// File of a recording that starts when the window opens. If empty, no recording starts.
    std::filesystem::path record;
    /// Screen size in pixels. The default is small enough for a software rasteriser to film it in one or two minutes.
    int width = 720;
    int height = 1280;
    /// Number of frames to draw. If 0, the script's own length is used.
    int frames = 0;
    /// Duration of the film in seconds. If 0, the script's own length is used.
    double seconds = 0.0;
    /// Frames per second of a film that is made without a window. If 0, a GIF has 25 and other films have 60.
    int framesPerSecond = 0;
    /// Format of films: mp4, webm or gif.
    std::string format = "mp4";
    /// Scale of the window's text. If 0, the scale of the display is used.
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

/// Returns the options of the command line. If the user asks for help or for the version, prints it and returns
/// nothing. Throws Failure.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace player
