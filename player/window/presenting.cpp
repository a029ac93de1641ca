#include "player/window/presenting.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "player/window/keeping.h"

namespace player {
namespace {

using Clock = FrameClock::Clock;

void drawWindows(WindowState& window) {
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
    if (!window.drawn && window.redraws <= 0 && !window.shotWanted && !noticeChanged) {
        return;
    }
    window.redraws = std::max(window.redraws - 1, 0);
    drawScreen(window);
    if (window.drawn && !window.times.empty()) {
        window.times.back().gl +=
            std::chrono::duration<float, std::milli>(Clock::now() - start).count();
    }
}

}  // namespace player
