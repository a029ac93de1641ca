#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/labels.h"
#include "app/random_settings.h"
#include "app/settings.h"
#include "desktop/image.h"
#include "desktop/preset.h"
#include "hostkit/gesture_script.h"
#include "player/script.h"
#include "player/window/file_browser.h"
#include "player/window/keys.h"
#include "player/window/marks.h"
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
constexpr ViewSwitch windowSwitches[] = {
    {Command::help, &View::help},
    {Command::panel, &View::panel},
};
constexpr ViewSwitch overlaySwitches[] = {
    {Command::velocityOverlay, &View::velocity},
    {Command::inkOverlay, &View::ink},
};

/// If the command belongs to a switch, toggles the switch and returns its new state. Otherwise, returns nothing.
template <std::size_t count>
std::optional<bool> toggled(const ViewSwitch (&switches)[count], Command command, View& view) {
    for (const ViewSwitch& one : switches) {
        if (one.command == command) {
            return view.*one.state = !(view.*one.state);
        }
    }
    return std::nullopt;
}

/// Returns the toast for a switch: its label and its new state.
std::string switchToast(Command command, bool on) {
    return std::string(textOf(command).label) +
           (on ? app::sharedText("on") : app::sharedText("off"));
}

}  // namespace

/// Runs the requests of keys, panel, dialogs and dropped files. Shows errors as toasts.
void OpenWindow::runCommands() {
    const Requests now = std::exchange(requests, {});
    for (const Command command : now.commands) {
        attempt(toast, [&] { run(command); });
        display.requestRedraws();
    }
    if (!now.preset.empty()) {
        attempt(toast, [&] { loadPreset(now.preset); });
    }
    for (const auto& [command, preset] : now.presetCommands) {
        if (command == Command::renamePreset) {
            askForNewName(preset);
        } else {
            confirmDeletion(preset);
        }
    }
    for (const Answer& answer : now.answers) {
        attempt(toast, [&] { take(answer); });
    }
    for (const std::filesystem::path& file : now.files) {
        attempt(toast, [&] { openFile(file); });
    }
}

void OpenWindow::run(Command command) {
    if (toggled(windowSwitches, command, view)) {
        return;
    }
    if (const std::optional<bool> on = toggled(overlaySwitches, command, view)) {
        return showToast(toast, switchToast(command, *on));
    }
    switch (command) {
        case Command::pause:
            return switchPause();
        case Command::step:
            return playback.step();
        case Command::attract:
            return switchAttractMode();
        case Command::secondBackground:
            return switchBackground();
        case Command::waterOnly:
            return switchInk();
        case Command::clearInk:
            session.core.add(hostkit::ClearInk{});
            return showToast(toast, app::sharedText("clearedInk"));
        case Command::loseContext:
            session.core.add(hostkit::LoseContext{});
            return showToast(toast, "The graphics context was lost and rebuilt");
        case Command::nextPreset:
            return loadNextPreset();
        case Command::inkForBackground:
            return chooseInkForBackground();
        case Command::randomSettings:
            return applyRandomSettings();
        case Command::resetSettings:
            return resetSettings();
        case Command::savePreset:
            return askForPresetName();
        case Command::renamePreset:
            presetList.checkOwn();
            return askForNewName(presetList.file());
        case Command::deletePreset:
            presetList.checkOwn();
            return confirmDeletion(presetList.file());
        case Command::undo:
            return undo();
        case Command::redo:
            return redo();
        case Command::openFile:
            return fileBrowser.open();
        case Command::accept:
            return dialog.accept();
        case Command::screenshot:
            return keeper.requestScreenshot();
        case Command::film:
            return keeper.switchFilm();
        case Command::record:
            return keeper.switchRecording();
        case Command::replay:
            return replay();
        case Command::stopReplay:
            return stopReplay();
        case Command::fullScreen:
            return screen.window().switchFullScreen();
        case Command::back:
            return goBack();
        case Command::quit:
            leaving = true;
            return;
        default:  // the switches
            return;
    }
}

/// Does the first of these actions that is possible: closes the topmost pop-up, closes the list of keys, closes the
/// panel, or stops the newest film, recording or replay. If none is possible, leaves the program.
void OpenWindow::goBack() {
    if (closePopup() || std::exchange(view.help, false) || std::exchange(view.panel, false)) {
        return;
    }
    const std::vector<Mark> active = marks();
    const auto newest = std::ranges::max_element(active, {}, &Mark::start);
    if (newest != active.end() && newest->start) {
        run(newest->end);
    } else {
        leaving = true;
    }
}

void OpenWindow::switchPause() {
    playback.switchPause();
    showToast(toast, playback.paused() ? app::sharedText("paused") : app::sharedText("resumed"));
}

void OpenWindow::switchAttractMode() {
    const bool on = !session.core.attractMode().isOn();
    session.core.turnAttractMode(on);
    showToast(toast, switchToast(Command::attract, on));
}

void OpenWindow::switchBackground() {
    bool& second = session.core.settings.secondBackground;
    second = !second;
    showToast(toast, second ? app::sharedText("secondPicture") : app::sharedText("firstPicture"));
}

void OpenWindow::switchInk() {
    bool& waterOnly = session.core.settings.waterOnly;
    waterOnly = !waterOnly;
    showToast(toast, switchToast(Command::waterOnly, waterOnly));
}

void OpenWindow::loadPreset(const std::filesystem::path& file) {
    session.core.settings = presetList.load(file);
    showToast(toast, presetList.name());
}

void OpenWindow::loadNextPreset() {
    loadPreset(presetList.next().file);
}

void OpenWindow::chooseInkForBackground() {
    session.core.settings.ink = session.core.inkAgainstBackground(0);
    showToast(toast, app::sharedText("matchedInk"));
}

void OpenWindow::applyRandomSettings() {
    session.core.settings = app::randomSettings(randomSeed++);
    presetList.noteRandom(session.core.settings);
    showToast(toast, std::string(app::sharedText("randomSettings")) + ". P saves it as a preset.");
}

void OpenWindow::resetSettings() {
    session.core.settings = presetList.original();
    showToast(toast, presetList.name() + app::sharedText("changesDiscarded"));
}

void OpenWindow::askForPresetName() {
    if (const auto name = presetList.savedName(session.core.settings)) {
        return showToast(toast, "These settings are already saved as " + *name);
    }
    dialog.ask(Command::savePreset, "Name of the new preset", keeper.newPresetName(), "Save");
}

void OpenWindow::askForNewName(const std::filesystem::path& preset) {
    dialogPreset = preset;
    dialog.ask(Command::renamePreset, app::sharedText("newPresetName"), preset.stem().string(),
               textOf(Command::renamePreset).label);
}

void OpenWindow::confirmDeletion(const std::filesystem::path& preset) {
    dialogPreset = preset;
    dialog.confirm(Command::deletePreset,
                   app::sharedText("deletePresetQuestion") + preset.stem().string() + "?",
                   textOf(Command::deletePreset).label);
}

/// Runs the command of a dialog with the user's answer.
void OpenWindow::take(const Answer& answer) {
    switch (answer.command) {
        case Command::savePreset:
            return savePreset(answer.text);
        case Command::renamePreset:
            return renamePreset(answer.text);
        case Command::deletePreset:
            return deletePreset();
        default:  // other commands ask no question
            return;
    }
}

void OpenWindow::savePreset(const std::string& name) {
    presetList.checkName(name);
    presetList.add(keeper.savePreset(name), session.core.settings);
}

void OpenWindow::renamePreset(const std::string& name) {
    if (name != dialogPreset.stem()) {
        presetList.checkName(name);
        presetList.rename(dialogPreset, keeper.renamePreset(dialogPreset, name));
        screen.thumbnails().forget(dialogPreset);  // a new preset may get the old name
    }
}

void OpenWindow::deletePreset() {
    const bool isCurrent = dialogPreset == presetList.file();
    keeper.deletePreset(dialogPreset);
    presetList.remove(dialogPreset);
    screen.thumbnails().forget(dialogPreset);
    if (isCurrent) {
        showToast(toast, toast.line + app::sharedText("deletedCurrent"));
    }
}

void OpenWindow::undo() {
    const std::optional<app::Settings> settings = history.undo();
    session.core.settings = settings.value_or(session.core.settings);
    showToast(toast, settings ? app::sharedText("undone") : app::sharedText("nothingToUndo"));
}

void OpenWindow::redo() {
    const std::optional<app::Settings> settings = history.redo();
    session.core.settings = settings.value_or(session.core.settings);
    showToast(toast, settings ? app::sharedText("redone") : app::sharedText("nothingToRedo"));
}

void OpenWindow::replay() {
    keeper.finishRecording();
    const std::filesystem::path file = keeper.lastRecording();
    if (file.empty()) {
        showToast(toast, std::string(app::sharedText("noRecording")) + ". R starts a recording.");
        return;
    }
    play(file);
}

void OpenWindow::play(const std::filesystem::path& gesture) {
    const std::string name = gesture.stem().string();
    playback.play(loadScript(gesture), name);
    showToast(toast, app::sharedText("playing") + name);
}

void OpenWindow::stopReplay() {
    playback.stopReplay();
    showToast(toast, app::sharedText("gestureStopped"));
}

/// Loads a preset, plays a gesture script or makes an image the background.
void OpenWindow::openFile(const std::filesystem::path& file) {
    const std::string extension = lowerExtension(file);
    if (extension == ".gesture") {
        return play(file);
    }
    if (extension == ".json") {
        session.core.settings = presetList.load(file);
    } else {
        session.showBackground(loadImage(file));
    }
    showToast(toast, file.filename().string());
}

}  // namespace player
