#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace app {

/// @file Texts that the player's window and the web page share, so that both use the same words. The build also writes
/// these texts as TypeScript. The labels of the settings are in settings.h.

/// Texts of a command.
struct CommandText {
    /// Name in the code.
    const char* name;
    /// Label of the button or switch.
    const char* label;
    /// Description in the list of keys and in hints.
    const char* description;
};
inline constexpr CommandText commandTexts[] = {
    {"help", "Keys", "Show or hide the list of keys"},
    {"panel", "Settings", "Show or hide the settings"},
    {"pause", "Pause", "Pause or resume"},
    {"step", "Step one frame", "Pause and draw one frame"},
    {"clearInk", "Clear ink", "Remove all ink"},
    {"secondPicture", "Show second picture", "Show the other picture"},
    {"waterOnly", "Water only", "Turn the ink off or on"},
    {"attractMode", "Idle animation", "Turn the idle animation off or on"},
    {"adaptiveQuality", "Adaptive quality",
     "Draw less detail on a slow machine. If off, always draw full detail"},
    {"fullScreen", "Full screen", "Toggle full screen"},
    {"nextPreset", "Next preset", "Load the next preset"},
    {"randomSettings", "Random look", "Choose random settings"},
    {"resetSettings", "Reset to preset", "Restore the settings of the preset"},
    {"savePreset", "Save as preset", "Save the settings as a preset"},
    {"renamePreset", "Rename", "Rename your preset"},
    {"deletePreset", "Delete", "Delete your preset"},
    {"undo", "Undo", "Undo the last change of the settings"},
    {"redo", "Redo", "Repeat the change that was undone"},
    {"startFresh", "Start fresh", "Restore the default settings and pictures. Your presets stay"},
    {"copyLink", "Copy link", "Copy a link to these settings"},
    {"openFile", "Open file...", "Open a picture, a preset or a gesture"},
    {"choosePicture", "Choose picture...", "Choose a picture as the background"},
    {"matchInk", "Match ink to picture", "Choose an ink that stands out from the picture"},
    {"screenshot", "Save screenshot", "Save a screenshot"},
    {"film", "Record video", "Start or stop filming"},
    {"record", "Record gesture", "Start or stop recording a gesture; a start resets the effect"},
    {"replay", "Replay gesture", "Replay the last recorded gesture"},
    {"velocityOverlay", "Velocity field", "Show or hide the velocity field"},
    {"inkOverlay", "Ink density", "Show or hide the ink density"},
    {"loseContext", "Lose context", "Lose the graphics context and rebuild it"},
};

/// Returns the element with the given name. An unknown name is a compile error.
template <class Text, std::size_t count>
consteval Text textNamed(const Text (&table)[count], std::string_view name) {
    return *std::find_if(table, table + count, [&](const Text& text) { return name == text.name; });
}

/// Returns the texts of a command. An unknown command name is a compile error.
consteval CommandText commandText(std::string_view name) {
    return textNamed(commandTexts, name);
}

/// A heading or a message.
struct SharedText {
    /// Name in the code.
    const char* name;
    const char* text;
};
inline constexpr SharedText sharedTexts[] = {
    // Headings of the panel's command sections. The headings of the settings are in settings.h.
    {"presetSection", "Preset"},
    {"viewSection", "View"},
    {"saveSection", "Save and record"},
    {"developerSection", "Developer"},
    // Names that replace the name of the preset if the settings do not come from a preset.
    {"defaultSettings", "Default"},
    {"randomSettings", "Random look"},
    {"linkSettings", "Shared look"},
    // Messages.
    {"paused", "Paused"},
    {"resumed", "Resumed"},
    {"on", " is on"},
    {"off", " is off"},
    {"firstPicture", "First picture"},
    {"secondPicture", "Second picture"},
    {"matchedInk", "Ink matched to the picture"},
    {"clearedInk", "Ink cleared"},
    {"undone", "Undone"},
    {"redone", "Redone"},
    {"nothingToUndo", "There is no change to undo"},
    {"nothingToRedo", "There is no undone change to repeat"},
    {"noRecording", "No gesture is recorded yet"},
    {"playing", "Playing "},
    {"gestureEnded", "The gesture has ended"},
    {"gestureStopped", "The gesture was stopped"},
    {"effectRestarted", ". The effect has restarted"},
    {"resizeEndedRecording", "The new window size ended the recording. "},
    {"inkEndedRecording", "Turning the ink off or on ended the recording. "},
    {"emptyVideo", "The video has no frame, so it is not saved. Record a longer video"},
    {"changesDiscarded", ", changes discarded"},
    // Hints of the on-screen indicators. An indicator shows an activity in progress. A click on the indicator ends this
    // activity.
    {"stopFilming", "Stop filming"},
    {"stopRecording", "Stop recording"},
    {"stopGesture", "Stop the gesture"},
    {"resume", "Resume"},
    {"builtIn", " is built in and cannot be renamed or deleted"},
    {"cancel", "Cancel"},
    {"newPresetName", "New name of the preset"},
    {"deletePresetQuestion", "Delete the preset "},
    {"presetExists", " already exists; choose another name"},
    {"renamedTo", "Renamed to "},
    {"deleted", "Deleted "},
    {"deletedCurrent", ". Its settings stay until you choose another preset"},
    {"damaged", "This link or file is damaged"},
    {"contextLost", "Graphics are restarting, please wait"},
};

/// Returns a shared heading or message. An unknown name is a compile error.
consteval const char* sharedText(std::string_view name) {
    return textNamed(sharedTexts, name).text;
}

}  // namespace app
