#include "player/window/keeping.h"

#include <cstdio>
#include <filesystem>

namespace player {
namespace {

void switchFilm(WindowState& window) {
    if (window.shots.filming()) {
        finishFilm(window);
    } else {
        window.filmStart = FrameClock::Clock::now();
        say(window.notice, "filming " + window.shots.startFilm(window.session.size()).string());
    }
}

void switchRecording(WindowState& window) {
    if (window.session.recording()) {
        finishRecording(window);
    } else {
        window.session.startRecording(window.shots.nameForGesture());
        window.recordingStart = FrameClock::Clock::now();
        say(window.notice,
            "recording " + window.session.recording()->file().string() + ", from a fresh start");
    }
}

}  // namespace

void keep(WindowState& window, Command command) {
    if (command == Command::screenshot) {
        window.shotWanted = true;
    } else if (command == Command::film) {
        switchFilm(window);
    } else if (command == Command::record) {
        switchRecording(window);
    } else if (command == Command::savePreset) {
        const std::filesystem::path file = window.shots.preset(window.session.settings);
        window.presets.push_back(named(file));
        say(window.notice, "saved " + file.string());
    }
}

void takeScreenshot(WindowState& window) {
    say(window.notice, "saved " + window.shots.screenshot(window.session.shown()).string());
}

void finishFilm(WindowState& window) {
    if (window.shots.filming()) {
        const auto film = window.shots.finishFilm();
        say(window.notice, film ? "filmed " + film->string() : "nothing was filmed");
    }
}

void finishRecording(WindowState& window) {
    if (!window.session.recording()) {
        return;
    }
    const std::filesystem::path file = window.session.recording()->file();
    tellDigest(window);
    window.session.finishRecording();
    window.shots.add(file);
    say(window.notice, "recorded " + file.string());
}

void tellFiles(const WindowState& window) {
    for (const std::filesystem::path& file : window.shots.files()) {
        std::printf("saved %s\n", file.c_str());
    }
}

void tellDigest(const WindowState& window) {
    if (window.options.digest) {
        std::printf("velocity %s\n", hex(window.session.seen().velocityDigest()).c_str());
        std::fflush(stdout);
    }
}

}  // namespace player
