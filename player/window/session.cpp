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
using hostkit::SecondBackground;
using hostkit::Touch;
using hostkit::TouchAction;
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
    hostkit::EffectHostOptions options;
    options.width = screenSize.width;
    options.height = screenSize.height;
    options.inkEnabled = !settings.waterOnly;
    options.background = covering(pictures.first, screenSize.width, screenSize.height);
    options.secondBackground = covering(pictures.second, screenSize.width, screenSize.height);
    options.water = waterOf(settings);
    options.renewContext = [this] {
        probe.forgetInk();
        screen.renewContext();
    };
    host.emplace(std::move(options));
    applied = settings;
    applyLook(settings, host->look());
    probe.watch(screenSize.width, screenSize.height, !settings.waterOnly);
    rain = {};
    inkOfNobody(std::nullopt);
    touched = false;
    watchForCalm(true);
}

void Session::frame(std::span<const ScriptAction> actions, std::chrono::nanoseconds elapsed) {
    const bool disturbed = !actions.empty() || !(settings == applied);
    applySettings();
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
        const auto [red, green, blue] = inkAgainstPicture(*stroke - 1);
        nobodysInk = {red, green, blue};
    }
}

void Session::applySettings() {
    if (settings.ink != applied.ink) {
        nobodysInk.reset();
    }
    if (settings.waterOnly != applied.waterOnly) {
        restart();
    }
    if (settings.meshDetail != applied.meshDetail) {
        host->replaceWater(waterOf(settings));
    }
    host->water().settings = waterOf(settings);
    applyLook(settings, host->look());
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
    const InkColor ink = nobodysInk.value_or(inkOf(settings));
    if (ink != host->look().ink) {
        add(ink);
    }
    if (settings.secondBackground != host->look().useSecondBackground) {
        add(SecondBackground{settings.secondBackground});
    }
    for (const ScriptAction& action : actions) {
        add(action);
        touched = touched || std::holds_alternative<Touch>(action);
        if (const auto* color = std::get_if<InkColor>(&action)) {
            takeInkOfScript({color->red, color->green, color->blue});
        } else if (const auto* second = std::get_if<SecondBackground>(&action)) {
            settings.secondBackground = second->on;
        }
    }
    applied = settings;
    if (record) {
        record->endFrame();
    }
    return events;
}

void Session::takeInkOfScript(const std::array<float, 3>& ink) {
    if (settings.ink != inkOfScript) {
        inkOfUser = settings.ink;
    }
    inkOfScript = settings.ink = ink;
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
