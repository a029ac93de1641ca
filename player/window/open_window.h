#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>

#include "app/backgrounds.h"
#include "app/settings.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "player/options.h"
#include "player/window/display.h"
#include "player/window/events.h"
#include "player/window/keeper.h"
#include "player/window/keys.h"
#include "player/window/panel.h"
#include "player/window/playback.h"
#include "player/window/pointer.h"
#include "player/window/preset_list.h"
#include "player/window/remembered.h"
#include "player/window/requests.h"
#include "player/window/screen.h"
#include "player/window/toast.h"
#include "player/window/window_session.h"

namespace player {

/// The window from its opening to its end. A turn of its loop takes events, runs commands, plays
/// the frames that are due and presents the picture; each of its parts is a class that does one of
/// these, and only commands reach them all.
class OpenWindow {
public:
    /// Throws Failure or HostError.
    explicit OpenWindow(const Options& options);

    /// Until it is closed or the program is interrupted. Prints the names of all files that it
    /// left. Throws Failure or HostError.
    void run();

private:
    OpenWindow(const Options& options, app::Backgrounds backgrounds,
               const std::optional<hostkit::GestureScript>& script, const Remembered& remembered);

    void turn();
    void runCommands();
    void run(Command command);
    void loadPreset(const std::filesystem::path& file);
    void loadNextPreset();
    void chooseInkForBackground();
    void applyRandomSettings();
    void resetSettings();
    void savePreset();
    void replay();
    void openDroppedFile(const std::filesystem::path& file);
    void presentFrame(bool drawn);
    void rememberChanges();

    Toast toast;
    Screen screen;
    WindowSession session;
    Pointer pointer;
    Keeper keeper;
    Playback playback;
    PresetList presetList;
    Display display;
    Requests requests;
    View view;
    /// What the window began with.
    app::Settings initialUserSettings;
    std::optional<app::Size> initialSize;
    bool remembers;
    bool waterOnlyGiven;
    /// Another one in each window.
    std::uint32_t randomSeed = std::random_device{}();
    bool leaving = false;
};

}  // namespace player
