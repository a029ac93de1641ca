#pragma once

#include <chrono>

#include "player/window/keeper.h"
#include "player/window/panel.h"
#include "player/window/screen.h"
#include "player/window/toast.h"
#include "player/window/window_session.h"

namespace player {

/// Shows the session's picture with overlays, panel, marks and notice over it, where any of these
/// changed.
class Display {
public:
    Display(Screen& onScreen, const WindowSession& ofSession, Keeper& keptBy, Toast& withToast);

    /// Something may have changed beside the effect's picture.
    void touch();
    /// Whether it is to be drawn soon, though the effect stands still.
    bool waits() const { return redraws > 0 || keeper.filming(); }
    /// `drawn`: the effect has just drawn a frame; else its last one is shown anew. Takes the
    /// screenshot that was asked for.
    void present(const Panel& panel, bool drawn);

private:
    using Clock = std::chrono::steady_clock;

    bool changed(const Panel& panel, bool drawn);
    void drawWindows(const Panel& panel);
    void drawOver(const Panel& panel);

    Screen& screen;
    const WindowSession& session;
    Keeper& keeper;
    Toast& toast;
    int redraws = 0;
    bool toastShown = false;
    double rate = 0.0;
    Clock::time_point presented{};
};

}  // namespace player
