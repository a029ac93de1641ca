#include <cstddef>
#include <filesystem>
#include <utility>

#include "app/random_settings.h"
#include "app/settings.h"
#include "desktop/image.h"
#include "desktop/preset.h"
#include "hostkit/gesture_script.h"
#include "player/script.h"
#include "player/window/keys.h"
#include "player/window/open_window.h"
#include "player/window/panel.h"
#include "player/window/requests.h"
#include "player/window/toast.h"

namespace player {

using desktop::loadImage;
using desktop::NamedPreset;

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

/// Toggles the switch of a command. Returns false if the command is no switch.
template <class Switch, std::size_t count, class Owner>
bool toggleSwitch(const Switch (&switches)[count], Command command, Owner& owner) {
    for (const Switch& one : switches) {
        if (one.command == command) {
            owner.*one.state = !(owner.*one.state);
            return true;
        }
    }
    return false;
}

}  // namespace

/// Runs the requests of keys, panel and dropped files. Shows errors as toasts.
void OpenWindow::runCommands() {
    const Requests now = std::exchange(requests, {});
    for (const Command command : now.commands) {
        attempt(toast, [&] { run(command); });
        display.requestRedraws();
    }
    if (!now.preset.empty()) {
        attempt(toast, [&] { loadPreset(now.preset); });
    }
    for (const std::filesystem::path& file : now.drops) {
        attempt(toast, [&] { openDroppedFile(file); });
    }
}

void OpenWindow::run(Command command) {
    if (toggleSwitch(viewSwitches, command, view) ||
        toggleSwitch(settingSwitches, command, session.core.settings)) {
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
            return loadNextPreset();
        case Command::inkForBackground:
            return chooseInkForBackground();
        case Command::randomSettings:
            return applyRandomSettings();
        case Command::resetSettings:
            return resetSettings();
        case Command::savePreset:
            return savePreset();
        case Command::screenshot:
            return keeper.requestScreenshot();
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
        default:  // toggleSwitch has handled the rest
            return;
    }
}

void OpenWindow::loadPreset(const std::filesystem::path& file) {
    session.core.settings = presetList.load(file);
    showToast(toast, presetList.name());
}

void OpenWindow::loadNextPreset() {
    if (const NamedPreset* preset = presetList.next()) {
        loadPreset(preset->file);
    }
}

void OpenWindow::chooseInkForBackground() {
    session.core.settings.ink = session.core.inkAgainstBackground(0);
    showToast(toast, "ink that contrasts with the background");
}

void OpenWindow::applyRandomSettings() {
    session.core.settings = app::randomSettings(randomSeed++);
    showToast(toast, "random settings; P saves them as a preset");
}

void OpenWindow::resetSettings() {
    session.core.settings = presetList.original();
    showToast(toast, presetList.name() + ", reset");
}

void OpenWindow::savePreset() {
    presetList.add(keeper.savePreset(), session.core.settings);
}

void OpenWindow::replay() {
    keeper.finishRecording();
    const std::filesystem::path file = keeper.lastRecording();
    if (file.empty()) {
        showToast(toast, "no gesture recorded yet; R starts a recording");
        return;
    }
    playback.play(loadScript(file));
    showToast(toast, "replaying " + file.string() + "; the effect was reset");
}

/// Loads a preset, plays a gesture script or makes an image the background.
void OpenWindow::openDroppedFile(const std::filesystem::path& file) {
    if (file.extension() == ".json") {
        session.core.settings = presetList.load(file);
    } else if (file.extension() == ".gesture") {
        playback.play(loadScript(file));
    } else {
        session.core.showBackground(loadImage(file));
    }
    showToast(toast, file.filename().string());
}

}  // namespace player
