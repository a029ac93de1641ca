#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "player/draw/overlays.h"

namespace player {

/// What the command line asks for.
struct Options {
    /// Empty: one of the desktop's.
    std::filesystem::path picture;
    std::filesystem::path second;
    std::filesystem::path script;
    std::filesystem::path out = "out";
    /// Where the window leaves screenshots, films, recordings and presets.
    std::filesystem::path shots = "shots";
    /// Empty: none.
    std::filesystem::path preset;
    std::filesystem::path record;
    /// Screen in pixels. The default is small enough for a software rasteriser to film in a minute
    /// or two.
    int width = 720;
    int height = 1280;
    /// 0: the script's frames and the time in which its ink fades.
    int frames = 0;
    /// Of films: mp4, webm or gif.
    std::string format = "mp4";
    /// Of the window's letters; 0: the display's.
    double fontScale = 0.0;
    bool scriptGiven = false;
    bool outGiven = false;
    bool sizeGiven = false;
    bool headless = false;
    bool noAttract = false;
    /// Look and size of the last window are neither used nor replaced.
    bool fresh = false;
    bool waterOnly = false;
    bool digest = false;
    Overlays overlays;
};

/// Reads the command line; nothing when the user asked for help or for the
/// version, which has been printed then. Throws Failure.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace player
