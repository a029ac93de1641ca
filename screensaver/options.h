#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "app/settings.h"

namespace saver {

/// Window to draw into.
struct Target {
    enum class Kind { ownWindow, rootWindow, givenWindow };
    Kind kind = Kind::ownWindow;
    /// X11 identifier of the given window.
    unsigned long window = 0;
};

/// Values of the command line.
struct Options {
    Target target;
    /// File or folder of the pictures. Empty: the pictures of xscreensaver-getimage.
    std::filesystem::path picture;
    /// Name of a shipped preset, file of a preset, or "random". Empty: the default settings.
    std::string preset;
    /// Gesture script to play at the start. Empty: none.
    std::filesystem::path script;
    /// Time until the next picture and the next random preset.
    std::chrono::seconds duration{60};
    /// Raindrops per second. Empty: the preset's.
    std::optional<float> rain;
    /// Seconds of effect time per second of real time. Empty: the preset's.
    std::optional<float> speed;
    bool ink = true;
};

/// Returns the options of the command line and of the variable XSCREENSAVER_WINDOW. Prints help or the version on
/// request and returns nothing then. Throws Failure.
std::optional<Options> parseOptions(int argc, const char* const* argv);

/// Returns settings with the rain, the speed and the ink of the options.
app::Settings withOptions(app::Settings settings, const Options& options);

}  // namespace saver
