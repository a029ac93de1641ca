#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/backgrounds.h"
#include "app/settings.h"
#include "app/settings_history.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "player/options.h"
#include "player/window/dialog.h"
#include "player/window/display.h"
#include "player/window/events.h"
#include "player/window/file_browser.h"
#include "player/window/keeper.h"
#include "player/window/keys.h"
#include "player/window/marks.h"
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

/// The player's window and its main loop. Each iteration handles events, runs commands, plays the due frames and
/// presents the result. A separate class does each of these steps. Commands of the user can use every class.
class OpenWindow {
public:
    /// Opens the window. Throws Failure or HostError.
    explicit OpenWindow(const Options& options);

    /// Runs until the window is closed or a signal ends the program. Then prints the names of all saved files. Throws
    /// Failure or HostError.
    void run();

private:
    OpenWindow(const Options& options, app::Backgrounds backgrounds,
               const std::optional<hostkit::GestureScript>& script, const app::Settings& given,
               const Remembered& remembered);

    void turn();
    bool takeEvents();
    void runCommands();
    void run(Command command);
    void goBack();
    void switchPause();
    void switchAttractMode();
    void switchBackground();
    void switchInk();
    void loadPreset(const std::filesystem::path& file);
    void loadNextPreset();
    void chooseInkForBackground();
    void applyRandomSettings();
    void resetSettings();
    void askForPresetName();
    void askForNewName(const std::filesystem::path& preset);
    void confirmDeletion(const std::filesystem::path& preset);
    void take(const Answer& answer);
    void savePreset(const std::string& name);
    void renamePreset(const std::string& name);
    void deletePreset();
    void undo();
    void redo();
    void replay();
    void play(const std::filesystem::path& gesture);
    void stopReplay();
    void openFile(const std::filesystem::path& file);
    std::vector<Mark> marks() const;
    void presentFrame(bool drawn);
    void rememberChanges();

    Toast toast;
    Screen screen;
    WindowSession session;
    Pointer pointer;
    Keeper keeper;
    Playback playback;
    PresetList presetList;
    Dialog dialog;
    /// Preset of the user that the open dialog renames or deletes.
    std::filesystem::path dialogPreset;
    FileBrowser fileBrowser;
    app::SettingsHistory history;
    Display display;
    Requests requests;
    View view;
    /// Settings of the user and window size at the start. rememberChanges compares them with the settings and the size
    /// at the end.
    app::Settings initialUserSettings;
    std::optional<app::Size> initialSize;
    /// Folder of the user's files.
    std::filesystem::path shotsFolder;
    bool remembers;
    bool waterOnlyGiven;
    /// Seed of the next random settings. It starts with another value in each window.
    std::uint32_t randomSeed = std::random_device{}();
    bool leaving = false;
};

}  // namespace player
