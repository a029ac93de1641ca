#include "player/window/presenting.h"

#include <algorithm>
#include <utility>

#include "player/draw/overlays.h"

namespace player {
namespace {

/// ImGui answers an event in the frame after it, and fades.
constexpr int redrawsAfterEvent = 3;
/// Often enough for a film of a picture that stands, and for the seconds of a mark.
constexpr auto longestStand = std::chrono::milliseconds(100);

}  // namespace

Display::Display(Screen& onScreen, const WindowSession& ofSession, Keeper& keptBy,
                 Notice& withNotice)
    : screen(onScreen), session(ofSession), keeper(keptBy), notice(withNotice) {
    touch();
}

void Display::touch() {
    redraws = redrawsAfterEvent;
}

bool Display::changed(const Panel& panel, bool drawn) {
    const auto now = Clock::now();
    const bool noticing = now < notice.end;
    const bool noticeChanged = noticing != std::exchange(noticeShown, noticing);
    const bool marksChange = !keeper.marks().empty() && now - presented >= longestStand;
    const bool stopped = std::exchange(rate, panel.rate) > 0.0 && rate <= 0.0;
    const bool panelChanges = panel.view.panel && stopped;
    return drawn || redraws > 0 || keeper.wantsScreenshot() || noticeChanged || marksChange ||
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
    if (noticeShown) {
        drawNotice(notice.line);
    }
}

/// Overlays, and the panel unless a screenshot is taken.
void Display::drawOver(const Panel& panel) {
    screen.beginPanel();
    drawOverlays({panel.view.velocity, panel.view.ink}, session.seen(), screen.canvas(),
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
    attempt(notice, [&] { keeper.addToFilm(); });
    attempt(notice, [&] { keeper.addPortrait(); });
    drawOver(panel);
    if (keeper.wantsScreenshot()) {
        attempt(notice, [&] { keeper.takeScreenshot(); });
    }
    screen.window().swap();
}

}  // namespace player
