#include "player/window/session.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "player/frame_time.h"
#include "player/ink_choice.h"
#include "player/picture.h"
#include "player/window/screen.h"

namespace player {
namespace {

using hostkit::InkColor;
using hostkit::ScriptAction;
using hostkit::Touch;
using std::chrono::steady_clock;

/// The ink has begun to fade after so many frames without a touch; two pictures so many frames
/// apart tell whether it still does.
constexpr int quietFramesBefore = 60;
constexpr int quietFramesBetween = 30;

float milliseconds(steady_clock::duration time) {
    return std::chrono::duration<float, std::milli>(time).count();
}

}  // namespace

Session::Session(Screen& onScreen, const Settings& chosen, Backgrounds backgrounds)
    : settings(chosen), screen(onScreen), pictures(std::move(backgrounds)) {
    restart();
}

void Session::restart() {
    finishRecording();
    const bool again = host.has_value();
    host.reset();
    if (again) {
        screen.renewContext();
    }
    screenSize = screen.window().pixels();
    hostkit::EffectHostOptions options = hostOptions(settings, screenSize.width, screenSize.height);
    options.background = covering(pictures.first, screenSize.width, screenSize.height);
    options.secondBackground = covering(pictures.second, screenSize.width, screenSize.height);
    options.renewContext = [this] {
        probe.forgetInk();
        screen.renewContext();
    };
    host.emplace(std::move(options));
    applied = settings;
    probe.watch(screenSize.width, screenSize.height, !settings.waterOnly);
    rain = {};
    inkOfNobody(std::nullopt);
    touched = false;
    watchForCalm(true);
}

void Session::frame(std::span<const ScriptAction> actions, std::chrono::nanoseconds elapsed) {
    const bool disturbed = !actions.empty() || !(settings == applied);
    applyChanges();
    const std::vector<hostkit::ScriptEvent> events = eventsOf(actions);
    const auto start = steady_clock::now();
    fall(rain, *host, settings, elapsed);
    host->step(events, elapsed);
    const auto drawStart = steady_clock::now();
    probe.draw(*host);
    const auto end = steady_clock::now();
    const auto ready = probe.moments().solverDone.value_or(drawStart);
    lastTimes = {milliseconds(drawStart - start), milliseconds(ready - drawStart),
                 milliseconds(end - ready)};
    watchForCalm(disturbed);
}

std::array<float, 3> Session::inkAgainstPicture(int variation) const {
    return inkAgainst(settings.secondBackground ? pictures.second : pictures.first, variation);
}

void Session::inkOfNobody(std::optional<int> stroke) {
    if (stroke == nobodysStroke) {
        return;
    }
    nobodysStroke = stroke;
    nobodysInk.reset();
    if (stroke && *stroke > 0) {  // the first shows the look as it is
        nobodysInk = inkAgainstPicture(*stroke - 1);
    }
}

void Session::applyChanges() {
    if (settings.ink != applied.ink) {
        nobodysInk.reset();
    }
    if (settings.waterOnly != applied.waterOnly) {
        restart();
    }
    applySettings(settings, *host);
    applied = settings;
}

std::vector<hostkit::ScriptEvent> Session::eventsOf(std::span<const ScriptAction> actions) {
    std::vector<hostkit::ScriptEvent> events;
    const auto add = [&](const ScriptAction& action) {
        events.push_back({0, action});
        if (record) {
            record->add(action);
        }
    };
    Settings seen = settings;
    seen.ink = nobodysInk.value_or(settings.ink);
    for (const ScriptAction& change : changesOfLook(seen, host->look())) {
        add(change);
    }
    for (const ScriptAction& action : actions) {
        add(action);
        touched = touched || std::holds_alternative<Touch>(action);
        if (const auto* ink = std::get_if<InkColor>(&action)) {
            rememberInkOfUser(*ink);
        }
        follow(settings, action);
    }
    applied = settings;
    if (record) {
        record->endFrame();
    }
    return events;
}

/// Before the script's ink becomes that of the settings.
void Session::rememberInkOfUser(const InkColor& script) {
    if (settings.ink != inkOfScript) {
        inkOfUser = settings.ink;
    }
    inkOfScript = {script.red, script.green, script.blue};
}

Settings Session::usersChoice() const {
    Settings choice = settings;
    if (choice.ink == inkOfScript) {
        choice.ink = inkOfUser;
    }
    choice.secondBackground = false;
    return choice;
}

void Session::showPicture(hostkit::Picture picture) {
    pictures.second = std::exchange(pictures.first, std::move(picture));
    host->setBackgrounds(covering(pictures.first, screenSize.width, screenSize.height),
                         covering(pictures.second, screenSize.width, screenSize.height));
    watchForCalm(true);
}

void Session::startRecording(const std::filesystem::path& file) {
    startReplay();
    record.emplace(file, screenSize);
    // Their events are the first of the recording, so that its replay finds them too.
    frame(forgetGestures(settings), frameTime);
}

void Session::startReplay() {
    restart();
    std::srand(1);  // the solver stirs with rand()
}

void Session::finishRecording() {
    if (record) {
        GestureRecording whole = *std::exchange(record, std::nullopt);
        whole.finish();
    }
}

bool Session::calm() const {
    return pictureStands && settings == applied;
}

void Session::watchForCalm(bool disturbed) {
    quietFrames = disturbed ? 0 : quietFrames + 1;
    if (disturbed || !host->water().resting || settings.rain > 0.0f) {
        pictureStands = false;
        return;
    }
    if (!touched) {  // nothing is left that could move
        pictureStands = true;
        return;
    }
    if (quietFrames >= quietFramesBefore && quietFrames % quietFramesBetween == 0) {
        hostkit::Digest picture;
        const hostkit::Picture now = shown();
        addBytes(picture, std::as_bytes(std::span(now.rgba)));
        pictureStands = std::exchange(quietPicture, picture.state) == picture.state;
        touched = !pictureStands;
    }
}

hostkit::Picture Session::shown() const {
    return screenPicture(screenSize);
}

}  // namespace player
