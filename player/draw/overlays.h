#pragma once

namespace player {

/// Overlays that are drawn over the frame.
struct Overlays {
    /// Lines along the flow, at most one per cell.
    bool velocity = false;
    /// False colours of the ink density.
    bool ink = false;
};

}  // namespace player
