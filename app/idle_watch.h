#pragma once

#include <cstdint>
#include <functional>

namespace app {

/// Detects that the next frame would look the same as the last frame, so that the front end can stop drawing.
class IdleWatch {
public:
    bool isIdle() const { return idle; }
    /// Returns true if ink may be visible. Faded ink leaves a static residue, so the result stays true until `start` is
    /// called.
    bool mayShowInk() const { return inkPossible; }

    /// Restarts the detection and assumes that no ink is visible. Call it when the effect starts and when the ink is
    /// cleared.
    void start();
    /// Ends the idle state because of a touch, which may deposit ink.
    void noteTouch();
    /// Ends the idle state because something other than a touch changes the image.
    void noteChange();
    /// Updates the state after a drawn frame. `digest` must return a digest of the screen. The function calls `digest`
    /// only in some frames, because reading the screen is slow.
    void noteFrame(bool waterIdle, const std::function<std::uint64_t()>& digest);

private:
    bool inkPossible = false;
    bool idle = false;
    int waterIdleFrames = 0;
    std::uint64_t lastDigest = 0;
};

}  // namespace app
