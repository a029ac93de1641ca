#include "player/window/commands.h"

#include <utility>

#include "player/picture.h"
#include "player/script.h"
#include "player/window/keeping.h"
#include "player/window/playing.h"

namespace player {
namespace {

struct ViewSwitch {
    Command command;
    bool View::*state;
};
constexpr ViewSwitch viewSwitches[] = {
    {Command::help, &View::help},      {Command::panel, &View::panel},
    {Command::pause, &View::paused},   {Command::velocityOverlay, &View::velocity},
    {Command::inkOverlay, &View::ink},
};

struct SettingSwitch {
    Command command;
    bool Settings::*state;
};
constexpr SettingSwitch settingSwitches[] = {
    {Command::secondBackground, &Settings::secondBackground},
    {Command::waterOnly, &Settings::waterOnly},
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

void showNextPreset(WindowState& window) {
    if (!window.presets.empty()) {
        const NamedPreset& preset = window.presets[window.nextPreset++ % window.presets.size()];
        window.session.settings = loadPreset(preset.file);
        say(window.notice, preset.name);
    }
}

void run(WindowState& window, Command command) {
    window.redraws = redrawsAfterEvent;
    if (turnSwitch(viewSwitches, command, window.view) ||
        turnSwitch(settingSwitches, command, window.session.settings)) {
        return;
    }
    switch (command) {
        case Command::attract:
            window.attract.on = !window.attract.on;
            break;
        case Command::step:
            window.view.paused = window.stepWanted = true;
            break;
        case Command::clearInk:
            window.actions.emplace_back(hostkit::ClearInk{});
            break;
        case Command::loseContext:
            window.actions.emplace_back(hostkit::LoseContext{});
            break;
        case Command::nextPreset:
            showNextPreset(window);
            break;
        case Command::fullScreen:
            window.screen.window().switchFullScreen();
            break;
        case Command::back:
            window.leaving = !std::exchange(window.view.help, false);
            break;
        case Command::quit:
            window.leaving = true;
            break;
        default:
            keep(window, command);
            break;
    }
}

}  // namespace

void runCommands(WindowState& window) {
    for (const Command command : std::exchange(window.commands, {})) {
        attempt(window.notice, [&] { run(window, command); });
    }
    if (!window.chosenPreset.empty()) {
        attempt(window.notice, [&] {
            window.session.settings = loadPreset(std::exchange(window.chosenPreset, {}));
        });
    }
    window.view.attract = window.attract.on;
    window.view.filming = window.shots.filming();
    window.view.recording = window.session.recording().has_value();
}

void dropFile(WindowState& window, const std::filesystem::path& file) {
    attempt(window.notice, [&] {
        if (file.extension() == ".json") {
            window.session.settings = loadPreset(file);
        } else if (file.extension() == ".gesture") {
            startReplay(window, Replay{loadScript(file)});
        } else {
            window.session.showPicture(loadPicture(file));
        }
        say(window.notice, file.filename().string());
    });
}

}  // namespace player
