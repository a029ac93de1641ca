#include "player/window/display.h"

#include <algorithm>
#include <utility>

#include "player/draw/draw_overlays.h"

namespace player {
namespace {

/// ImGui answers an event in the frame after it, and fades.
constexpr int redrawsPerEvent = 3;
/// Often enough for a film of a picture that stands, and for the seconds of a mark.
constexpr auto maxRedrawInterval = std::chrono::milliseconds(100);

}  // namespace

Display::Display(Screen& onScreen, const WindowSession& ofSession, Keeper& keptBy, Toast& withToast)
    : screen(onScreen), session(ofSession), keeper(keptBy), toast(withToast) {
    touch();
}

void Display::touch() {
    redraws = redrawsPerEvent;
}

bool Display::changed(const Panel& panel, bool drawn) {
    const auto now = Clock::now();
    const bool toastVisible = now < toast.end;
    const bool toastChanged = toastVisible != std::exchange(toastShown, toastVisible);
    const bool marksChange = !keeper.marks().empty() && now - presented >= maxRedrawInterval;
    const bool stopped = std::exchange(rate, panel.rate) > 0.0 && rate <= 0.0;
    const bool panelChanges = panel.view.panel && stopped;
    return drawn || redraws > 0 || keeper.wantsScreenshot() || toastChanged || marksChange ||
           panelChanges;
}

void Display::drawWindows(const Panel& panel) {
    int row = 0;
    for (const Mark& mark : keeper.marks()) {
        drawMark(mark.word, mark.time, row++);
    }
    if (panel.view.panel) {
        drawPanel(panel);
    }
    if (panel.view.help) {
        drawHelp(panel.requests);
    }
    if (toastShown) {
        drawToast(toast.line);
    }
}

/// Overlays, and the panel unless a screenshot is taken.
void Display::drawOver(const Panel& panel) {
    screen.beginPanel();
    drawOverlays({panel.view.velocity, panel.view.ink}, session.effectProbe(), screen.canvas(),
                 screen.window().pixels());
    if (!keeper.wantsScreenshot()) {
        drawWindows(panel);
    }
    screen.drawPanel();
    if (isHintDue()) {
        touch();
    }
}

void Display::present(const Panel& panel, bool drawn) {
    if (!changed(panel, drawn)) {
        return;
    }
    presented = Clock::now();
    redraws = std::max(redraws - 1, 0);
    if (drawn) {
        screen.canvas().keep(session.size());
    } else {
        screen.canvas().show(screen.window().pixels());
    }
    attempt(toast, [&] { keeper.addToFilm(); });
    attempt(toast, [&] { keeper.addThumbnail(); });
    drawOver(panel);
    if (keeper.wantsScreenshot()) {
        attempt(toast, [&] { keeper.takeScreenshot(); });
    }
    screen.window().swap();
}

}  // namespace player
