#pragma once

#include <cstdint>
#include <functional>

namespace app {

/// Detects that another frame would show the same picture, so that no more frames are needed.
class IdleWatch {
public:
    bool isIdle() const { return idle; }
    /// Returns whether ink may be on the screen. Faded ink leaves a static residue, so this stays true until `start`.
    bool mayShowInk() const { return mayInk; }

    /// Notes a start of the effect or a clear: no ink is on the screen.
    void start();
    /// Notes a touch, which may leave ink.
    void noteTouch();
    /// Notes that something changed.
    void disturb();
    /// Looks at a frame that was drawn. `digest` returns a digest of the picture; it is called in few frames, because
    /// reading a picture is slow.
    void see(bool waterRests, const std::function<std::uint64_t()>& digest);

private:
    bool mayInk = false;
    bool idle = false;
    int quietFrames = 0;
    std::uint64_t lastDigest = 0;
};

}  // namespace app
