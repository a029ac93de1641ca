#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace hostkit {

/// @file
/// Gesture scripts: recorded or hand-written touches that a host replays. A script is a text with one event per line.
/// `#` starts a comment. Blank lines are skipped. Example:
///
///     screen 1080 1920        screen size that the coordinates refer to, in pixels; default: 1080 1920
///     frames 240              number of frames to play; default: 60 frames after the last event
///     0 ink 0.1 0.3 0.9       sets the ink colour: red, green, blue, 0 to 1
///     4 down 540 960 0.6      FRAME ACTION X Y PRESSURE; actions: down, move, up, cancel
///     5 move 552.5 960 0.6    x to the right and y down, from the top left corner
///     90 second on            shows (on) or hides (off) the second background
///     120 clear               removes the ink at once
///     150 lose-context        replaces the GL context before the frame is drawn
///
/// `screen` and `frames` must come before the first event. Frame numbers start at 0 and never decrease.

/// Kind of a touch event. The values are Android's action codes, which onTouch expects.
enum class TouchAction {
    /// The finger touches the screen.
    down = 0,
    /// The finger leaves the screen.
    up = 1,
    /// The finger moves on the screen.
    move = 2,
    /// The system ends the gesture. The library then hides the ink.
    cancel = 3
};

/// A touch event.
struct Touch {
    /// Kind of the event.
    TouchAction action;
    /// Distance from the left edge of the screen in pixels.
    double x;
    /// Distance from the top edge of the screen in pixels.
    double y;
    /// Pressure of the finger, at least 0; a firm touch has 1.
    float pressure;
    bool operator==(const Touch&) const = default;
};
/// An action of a script that sets the ink colour. Each channel is from 0 to 1.
struct InkColor {
    /// Red, 0 to 1.
    float red;
    /// Green, 0 to 1.
    float green;
    /// Blue, 0 to 1.
    float blue;
    bool operator==(const InkColor&) const = default;
};
/// Selects the background.
struct SecondBackground {
    /// True for the second background, false for the first.
    bool on;
    bool operator==(const SecondBackground&) const = default;
};
/// Removes the ink.
struct ClearInk {
    bool operator==(const ClearInk&) const = default;
};
/// Replaces the GL context.
struct LoseContext {
    bool operator==(const LoseContext&) const = default;
};
/// An action of a script.
using ScriptAction = std::variant<Touch, InkColor, SecondBackground, ClearInk, LoseContext>;

/// An action and the frame at which it happens.
struct ScriptEvent {
    /// Number of the frame before which the action is applied. The first frame is 0.
    int frame;
    /// The action.
    ScriptAction action;
    bool operator==(const ScriptEvent&) const = default;
};

/// A gesture script in memory.
struct GestureScript {
    /// Width in pixels of the screen to which the positions refer.
    int screenWidth = 1080;
    /// Height in pixels of the screen to which the positions refer.
    int screenHeight = 1920;
    /// Number of frames to play, at least 1.
    int frames = 60;
    /// Events, sorted by frame number.
    std::vector<ScriptEvent> events;
    bool operator==(const GestureScript&) const = default;
};

/// Parses a script. Throws HostError "FILE:LINE: expected ..., found ..." at the first invalid line.
/// @param text text of the script
/// @param fileName file name for error messages
/// @return the script
GestureScript parseGestureScript(std::string_view text, const std::string& fileName);

/// Writes an event as a line of a script.
/// @param event event to write
/// @return the line; it does not end with a line break
std::string writeScriptEvent(const ScriptEvent& event);

/// Writes a script as text. parseGestureScript converts the text back to an equal script. Comments of the original text
/// are lost.
/// @param script script to write
/// @return the text
std::string writeGestureScript(const GestureScript& script);

/// Reads and parses a script. Throws HostError if the file cannot be read or a line is invalid.
/// @param file path of the file
/// @return the script
GestureScript loadGestureScript(const std::filesystem::path& file);

/// Returns the events of one frame.
/// @param script script that contains the events
/// @param frame frame number, from 0
/// @return the events in order; valid until the script changes
std::span<const ScriptEvent> eventsOfFrame(const GestureScript& script, int frame);

/// Scales the positions of a script to a screen of another size. Each axis is scaled by its own factor.
/// @param script script to scale
/// @param width width of the new screen in pixels
/// @param height height of the new screen in pixels
/// @return the scaled script
GestureScript scaledToScreen(GestureScript script, int width, int height);

}  // namespace hostkit
