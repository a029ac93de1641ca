#pragma once

#include "player/window/session.h"

namespace player {

/// Strokes along the flow, one a cell or fewer, into the background of the ImGui frame.
void drawVelocity(const VelocityField& field);

}  // namespace player
