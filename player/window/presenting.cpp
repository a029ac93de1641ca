#include "player/window/presenting.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "player/window/keeping.h"

namespace player {
namespace {

using Clock = FrameClock::Clock;

/// Often enough for a film of a picture that stands, and for the seconds of a mark.
constexpr auto longestStand = std::chrono::milliseconds(100);

void drawMarks(const WindowState& window) {
    int row = 0;
    const auto mark = [&](bool on, const char* word, Clock::time_point start) {
        if (on) {
            drawMark(word, std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start),
                     row++);
        }
    };
    mark(window.view.filming, "film", window.filmStart);
    mark(window.view.recording, "gesture", window.recordingStart);
}

void drawWindows(WindowState& window) {
    drawMarks(window);
    if (window.view.panel) {
        drawPanel({window.view, window.presets, window.times, window.session.settings,
                   window.commands, window.chosenPreset});
    }
    if (window.view.help) {
        drawHelp();
    }
    if (window.notice.shown) {
        drawNotice(window.notice.line);
    }
}

/// Overlays, and the panel unless a screenshot is taken.
void drawOver(WindowState& window) {
    Screen& screen = window.screen;
    screen.beginPanel();
    drawOverlays({window.view.velocity, window.view.ink}, window.session.seen(), screen.canvas(),
                 screen.window().pixels());
    if (!window.shotWanted) {
        drawWindows(window);
    }
    screen.drawPanel();
}

void drawScreen(WindowState& window) {
    if (window.drawn) {
        window.screen.canvas().keep(window.session.size());
    } else {
        window.screen.canvas().show(window.screen.window().pixels());
    }
    if (window.shots.filming()) {
        attempt(window.notice, [&] { window.shots.addToFilm(window.session.shown()); });
    }
    drawOver(window);
    if (std::exchange(window.shotWanted, false)) {
        attempt(window.notice, [&] { takeScreenshot(window); });
    }
    window.screen.window().swap();
}

}  // namespace

void present(WindowState& window) {
    const auto start = Clock::now();
    const bool noticing = start < window.notice.end;
    const bool noticeChanged = noticing != std::exchange(window.notice.shown, noticing);
    const bool marking = window.view.filming || window.view.recording;
    const bool stands = marking && start - window.presented >= longestStand;
    if (!window.drawn && window.redraws <= 0 && !window.shotWanted && !noticeChanged && !stands) {
        return;
    }
    window.presented = start;
    window.redraws = std::max(window.redraws - 1, 0);
    drawScreen(window);
    if (window.drawn && !window.times.empty()) {
        window.times.back().gl +=
            std::chrono::duration<float, std::milli>(Clock::now() - start).count();
    }
}

}  // namespace player
