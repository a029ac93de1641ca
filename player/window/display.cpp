#include "player/window/display.h"

#include <algorithm>
#include <utility>

#include "player/draw/draw_overlays.h"
#include "player/window/marks.h"

namespace player {
namespace {

/// Number of redraws after an event. ImGui needs more than one frame to show its complete reaction to an event.
constexpr int redrawsPerEvent = 3;
/// Longest time between redraws during a film or a recording. This time is short enough for a film of an idle effect,
/// and for the on-screen indicators, which show the elapsed seconds.
constexpr auto maxRedrawInterval = std::chrono::milliseconds(100);

}  // namespace

Display::Display(Screen& onScreen, const WindowSession& ofSession, Keeper& keptBy, Toast& withToast)
    : screen(onScreen), session(ofSession), keeper(keptBy), toast(withToast) {
    requestRedraws();
}

void Display::requestRedraws() {
    redraws = redrawsPerEvent;
}

bool Display::changed(const Panel& panel, bool drawn) {
    const auto now = Clock::now();
    const bool toastVisible = now < toast.end;
    const bool toastChanged = toastVisible != std::exchange(toastShown, toastVisible);
    const bool marksChange =
        (panel.view.filming || panel.view.recording) && now - presented >= maxRedrawInterval;
    const bool stopped = std::exchange(rate, panel.rate) > 0.0 && rate <= 0.0;
    const bool panelChanges = panel.view.panel && stopped;
    return drawn || redraws > 0 || keeper.wantsScreenshot() || toastChanged || marksChange ||
           panelChanges;
}

void Display::drawWindows(const Panel& panel) {
    drawMarks(panel.marks, panel.requests);
    if (panel.view.panel) {
        drawPanel(panel);
    }
    if (panel.view.help) {
        drawHelp(panel.requests);
    }
    panel.dialog.draw(panel.requests);
    panel.fileBrowser.draw(panel.requests);
    if (toastShown) {
        drawToast(toast.line);
    }
}

/// Draws the overlays. Also draws the panel, except into a frame of which a screenshot will be saved.
void Display::drawOver(const Panel& panel) {
    screen.beginPanel();
    drawOverlays({panel.view.velocity, panel.view.ink}, session.effectProbe(), screen.canvas(),
                 screen.window().pixels());
    if (!keeper.wantsScreenshot()) {
        drawWindows(panel);
    }
    screen.drawPanel();
    if (isHintDue()) {
        requestRedraws();
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
    // Add no frame to the film while the effect still has the window's old size. It soon restarts in the new size.
    if (screen.window().pixels() == session.size()) {
        attempt(toast, [&] { keeper.addToFilm(); });
    }
    attempt(toast, [&] { keeper.addThumbnail(); });
    drawOver(panel);
    if (keeper.wantsScreenshot()) {
        attempt(toast, [&] { keeper.takeScreenshot(); });
    }
    screen.window().swap();
}

}  // namespace player
