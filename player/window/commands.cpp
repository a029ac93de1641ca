#include <cstddef>
#include <filesystem>
#include <utility>

#include "app/random_settings.h"
#include "app/settings.h"
#include "hostkit/gesture_script.h"
#include "player/picture.h"
#include "player/preset.h"
#include "player/script.h"
#include "player/window/keys.h"
#include "player/window/notice.h"
#include "player/window/open_window.h"
#include "player/window/panel.h"
#include "player/window/requests.h"

namespace player {
namespace {

struct ViewSwitch {
    Command command;
    bool View::*state;
};
constexpr ViewSwitch viewSwitches[] = {
    {Command::help, &View::help},
    {Command::panel, &View::panel},
    {Command::velocityOverlay, &View::velocity},
    {Command::inkOverlay, &View::ink},
};

struct SettingSwitch {
    Command command;
    bool app::Settings::*state;
};
constexpr SettingSwitch settingSwitches[] = {
    {Command::secondBackground, &app::Settings::secondBackground},
    {Command::waterOnly, &app::Settings::waterOnly},
};

/// Whether the command is one of the switches, which is then turned.
template <class Switch, std::size_t count, class Owner>
bool turnSwitch(const Switch (&switches)[count], Command command, Owner& owner) {
    for (const Switch& one : switches) {
        if (one.command == command) {
            owner.*one.state = !(owner.*one.state);
            return true;
        }
    }
    return false;
}

}  // namespace

/// Of keys, panel and dropped files. What fails is told in the window.
void OpenWindow::runCommands() {
    const Requests now = std::exchange(requests, {});
    for (const Command command : now.commands) {
        attempt(notice, [&] { run(command); });
        display.touch();
    }
    if (!now.preset.empty()) {
        attempt(notice, [&] { loadLook(now.preset); });
    }
    for (const std::filesystem::path& file : now.drops) {
        attempt(notice, [&] { takeDrop(file); });
    }
}

void OpenWindow::run(Command command) {
    if (turnSwitch(viewSwitches, command, view) ||
        turnSwitch(settingSwitches, command, session.core.settings)) {
        return;
    }
    switch (command) {
        case Command::pause:
            return playback.switchPause();
        case Command::step:
            return playback.step();
        case Command::attract:
            return session.core.turnAttractMode(!session.core.attractMode().isOn());
        case Command::clearInk:
            return session.core.add(hostkit::ClearInk{});
        case Command::loseContext:
            return session.core.add(hostkit::LoseContext{});
        case Command::nextPreset:
            return loadNextLook();
        case Command::inkOfPicture:
            return takeInkOfPicture();
        case Command::randomLook:
            return showRandomLook();
        case Command::resetLook:
            return resetLook();
        case Command::savePreset:
            return savePreset();
        case Command::screenshot:
            return keeper.wantScreenshot();
        case Command::film:
            return keeper.switchFilm();
        case Command::record:
            return keeper.switchRecording();
        case Command::replay:
            return replay();
        case Command::fullScreen:
            return screen.window().switchFullScreen();
        case Command::back:
            leaving = !std::exchange(view.help, false);
            return;
        case Command::quit:
            leaving = true;
            return;
        default:  // the switches
            return;
    }
}

void OpenWindow::loadLook(const std::filesystem::path& file) {
    session.core.settings = looks.load(file);
    say(notice, looks.name());
}

void OpenWindow::loadNextLook() {
    if (const NamedPreset* preset = looks.next()) {
        loadLook(preset->file);
    }
}

void OpenWindow::takeInkOfPicture() {
    session.core.settings.ink = session.core.inkAgainstBackground(0);
    say(notice, "an ink that stands out from the picture");
}

void OpenWindow::showRandomLook() {
    session.core.settings = app::randomSettings(nextRandomLook++);
    say(notice, "a look by chance; P saves it");
}

void OpenWindow::resetLook() {
    session.core.settings = looks.unchanged();
    say(notice, looks.name() + ", as it was");
}

void OpenWindow::savePreset() {
    looks.add(keeper.savePreset(), session.core.settings);
}

void OpenWindow::replay() {
    keeper.finishRecording();
    const std::filesystem::path file = keeper.lastRecording();
    if (file.empty()) {
        say(notice, "no gesture has been recorded yet: R begins");
        return;
    }
    playback.play(loadScript(file));
    say(notice, "replaying " + file.string() + ", from a fresh start");
}

/// A preset is loaded, a gesture script is played, a picture becomes the background.
void OpenWindow::takeDrop(const std::filesystem::path& file) {
    if (file.extension() == ".json") {
        session.core.settings = looks.load(file);
    } else if (file.extension() == ".gesture") {
        playback.play(loadScript(file));
    } else {
        session.core.showPicture(loadPicture(file));
    }
    say(notice, file.filename().string());
}

}  // namespace player
