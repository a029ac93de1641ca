#pragma once

namespace player {

/// Overlays that are shown over the picture.
struct Overlays {
    /// Lines along the flow, at most one a cell.
    bool velocity = false;
    /// False colours of the ink's density.
    bool ink = false;
};

}  // namespace player
