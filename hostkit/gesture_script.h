#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace hostkit {

/// A gesture script is a text of one event a line; '#' starts a comment, blank lines are skipped:
///
///     screen 1080 1920        of the coordinates below, in pixels; this is the default
///     frames 240              how long to play; default: 60 frames after the last event
///     0 ink 0.1 0.3 0.9       ink colour from here on: red, green, blue, 0 to 1
///     4 down 540 960 0.6      FRAME ACTION X Y PRESSURE; actions: down, move, up, cancel
///     5 move 552.5 960 0.6    x to the right and y down from the top left corner
///     90 second on            second background on or off
///     120 clear               removes the ink at once
///     150 lose-context        the GL context is replaced before the frame is drawn
///
/// Headers come first, frames count from 0 and never go down.

/// Values are the platform's action codes.
enum class TouchAction { down = 0, up = 1, move = 2, cancel = 3 };

struct Touch {
    TouchAction action;
    double x;
    double y;
    float pressure;
    bool operator==(const Touch&) const = default;
};
struct InkColor {
    float red;
    float green;
    float blue;
    bool operator==(const InkColor&) const = default;
};
struct SecondBackground {
    bool on;
    bool operator==(const SecondBackground&) const = default;
};
struct ClearInk {
    bool operator==(const ClearInk&) const = default;
};
struct LoseContext {
    bool operator==(const LoseContext&) const = default;
};
using ScriptAction = std::variant<Touch, InkColor, SecondBackground, ClearInk, LoseContext>;

struct ScriptEvent {
    int frame;
    ScriptAction action;
    bool operator==(const ScriptEvent&) const = default;
};

struct GestureScript {
    int screenWidth = 1080;
    int screenHeight = 1920;
    /// Frames to play, at least 1.
    int frames = 60;
    /// In order of their frames.
    std::vector<ScriptEvent> events;
    bool operator==(const GestureScript&) const = default;
};

/// Throws HostError "FILE:LINE: expected ..." at the first line that is not as above.
GestureScript parseGestureScript(std::string_view text, const std::string& fileName);

/// An event as its line, without the line's end.
std::string writeScriptEvent(const ScriptEvent& event);

/// parseGestureScript of the result gives an equal record; comments of an earlier text are not kept.
std::string writeGestureScript(const GestureScript& script);

/// Throws HostError when the file cannot be read or parsed.
GestureScript loadGestureScript(const std::filesystem::path& file);

/// The events of one frame.
std::span<const ScriptEvent> eventsOfFrame(const GestureScript& script, int frame);

/// The same gesture for a screen of another size: positions scaled along each axis.
GestureScript scaledToScreen(GestureScript script, int width, int height);

}  // namespace hostkit
