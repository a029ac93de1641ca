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
#include "player/window/events.h"
#include "player/window/keeping.h"
#include "player/window/keys.h"
#include "player/window/looks.h"
#include "player/window/notice.h"
#include "player/window/panel.h"
#include "player/window/playing.h"
#include "player/window/pointer.h"
#include "player/window/presenting.h"
#include "player/window/remembered.h"
#include "player/window/requests.h"
#include "player/window/screen.h"
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
    void loadLook(const std::filesystem::path& file);
    void loadNextLook();
    void takeInkOfPicture();
    void showRandomLook();
    void resetLook();
    void savePreset();
    void replay();
    void takeDrop(const std::filesystem::path& file);
    void presentFrame(bool drawn);
    void rememberChanges();

    Notice notice;
    Screen screen;
    WindowSession session;
    Pointer pointer;
    Keeper keeper;
    Playback playback;
    Looks looks;
    Display display;
    Requests requests;
    View view;
    /// What the window began with.
    app::Settings begun;
    std::optional<app::Size> begunSize;
    bool remembers;
    bool waterOnlyGiven;
    /// Another one in each window.
    std::uint32_t nextRandomLook = std::random_device{}();
    bool leaving = false;
};

}  // namespace player
