#pragma once

#include <chrono>
#include <span>
#include <string>

#include "app/settings.h"
#include "player/draw/thumbnails.h"
#include "player/window/preset_list.h"
#include "player/window/requests.h"
#include "player/window/window_session.h"

namespace player {

/// What of the player itself is on.
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

/// What the panel shows, and where it leaves what the user wants.
struct Panel {
    const View& view;
    const PresetList& presetList;
    Thumbnails& thumbnails;
    /// Of the last frames, the newest last.
    std::span<const FrameTimes> times;
    /// Frames a second; 0: the effect stands still.
    double rate;
    app::Settings& settings;
    Requests& requests;
};

/// Into the current ImGui frame.
void drawPanel(const Panel& panel);
/// Whether a hint comes with time, where the pointer stays.
bool isHintDue();
void drawHelp(Requests& requests);
/// A red dot with its word and how long it has been on, in the upper right corner, one below the
/// other by `row`.
void drawMark(const char* word, std::chrono::seconds time, int row);
/// A line at the lower edge.
void drawToast(const std::string& line);

}  // namespace player
