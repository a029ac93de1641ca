#pragma once

namespace player {

/// Overlays that are drawn over the frame.
struct Overlays {
    /// True to show lines along the flow, at most one per cell.
    bool velocity = false;
    /// True to show false colours of the ink density.
    bool ink = false;
};

}  // namespace player
