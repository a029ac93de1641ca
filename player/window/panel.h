#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "app/settings.h"
#include "player/draw/thumbnails.h"
#include "player/window/dialog.h"
#include "player/window/file_browser.h"
#include "player/window/marks.h"
#include "player/window/preset_list.h"
#include "player/window/requests.h"
#include "player/window/window_session.h"

namespace player {

/// State of the window, except the settings. Each member names a part of the window or an activity. The member is true
/// while this part is visible or this activity is on.
struct View {
    bool panel = false;
    bool help = false;
    bool velocity = false;
    bool ink = false;
    bool paused = false;
    bool attract = true;
    bool filming = false;
    bool recording = false;
};

/// Inputs of the panel, and the settings and requests that it changes.
struct Panel {
    const View& view;
    const PresetList& presetList;
    Thumbnails& thumbnails;
    /// Times of the last frames, the newest last.
    std::span<const FrameTimes> times;
    /// Frames per second; 0 while the effect is idle or paused.
    double rate;
    app::Settings& settings;
    Requests& requests;
    /// Folder of the user's recorded gestures.
    const std::filesystem::path& gestureFolder;
    Dialog& dialog;
    FileBrowser& fileBrowser;
    std::span<const Mark> marks;
};

/// Draws the panel into the current ImGui frame.
void drawPanel(const Panel& panel);
/// Closes the topmost pop-up, such as the presets or the colour picker. Returns false if there is none.
bool closePopup();
/// Returns true if the pointer is on a control whose hint is not visible yet.
bool isHintDue();
/// Draws the list of keys.
void drawHelp(Requests& requests);
/// Draws a toast at the lower edge.
void drawToast(const std::string& line);

}  // namespace player
