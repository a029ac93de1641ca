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
    /// X11 identifier of the window that the user named, if `kind` is `givenWindow`.
    unsigned long window = 0;
};

/// Values of the command line.
struct Options {
    Target target;
    /// File or folder of the pictures. If empty, xscreensaver-getimage chooses the pictures.
    std::filesystem::path picture;
    /// Name of a shipped preset, path of a preset file, or "random". If empty, the default settings are used.
    std::string preset;
    /// Path of a gesture script to play at the start. If empty, none is played.
    std::filesystem::path script;
    /// Time from one picture to the next, and from one random preset to the next.
    std::chrono::seconds duration{60};
    /// Raindrops per second. If empty, the value of the preset is used.
    std::optional<float> rain;
    /// Seconds of effect time per second of real time. If empty, the value of the preset is used.
    std::optional<float> speed;
    bool ink = true;
};

/// Returns the options from the command line and from the variable XSCREENSAVER_WINDOW. If the user asks for help or
/// for the version, prints it and returns nothing. Throws Failure.
std::optional<Options> parseOptions(int argc, const char* const* argv);

/// Returns a copy of the settings in which the options replace the rain, the speed and the ink.
app::Settings withOptions(app::Settings settings, const Options& options);

}  // namespace saver
