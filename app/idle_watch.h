#pragma once

#include <cstdint>
#include <functional>

namespace app {

/// Detects whether the next frame would look the same, so that the front end can stop drawing.
class IdleWatch {
public:
    bool isIdle() const { return idle; }
    /// Returns true if ink may be on the screen. Faded ink leaves a static residue, so the result stays true until
    /// `start`.
    bool mayShowInk() const { return inkPossible; }

    /// Restarts detection without ink. Call it when the effect starts and when the ink is cleared.
    void start();
    /// Notes a touch, which may deposit ink. Ends the idle state.
    void noteTouch();
    /// Notes any other change of the image. Ends the idle state.
    void noteChange();
    /// Notes a drawn frame. `digest` returns a digest of the screen. It is called in few frames, because reading the
    /// screen is slow.
    void noteFrame(bool waterIdle, const std::function<std::uint64_t()>& digest);

private:
    bool inkPossible = false;
    bool idle = false;
    int waterIdleFrames = 0;
    std::uint64_t lastDigest = 0;
};

}  // namespace app
