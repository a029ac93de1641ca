#pragma once

#include <chrono>

#include "player/window/keeper.h"
#include "player/window/panel.h"
#include "player/window/screen.h"
#include "player/window/toast.h"
#include "player/window/window_session.h"

namespace player {

/// Presents the effect's frame with overlays, panel, on-screen indicators and toast. Redraws only after a change.
class Display {
public:
    Display(Screen& onScreen, const WindowSession& ofSession, Keeper& keptBy, Toast& withToast);

    /// Requests redraws. Call this function after any event that can change the panel or another element over the
    /// effect's frame.
    void requestRedraws();
    /// Returns true if a redraw is due even while the effect is idle.
    bool needsRedraw() const { return redraws > 0 || keeper.filming(); }
    /// Presents the new frame of the effect if `drawn` is true, otherwise a stored copy of the last frame. Saves a
    /// screenshot if the user has requested one.
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
