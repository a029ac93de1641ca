#pragma once

#include <span>

#include "player/window/window_session.h"

namespace player {

/// Draws the times of the last frames into the current ImGui window: stacked bars and the mean of each part in ms.
void drawFrameGraph(std::span<const FrameTimes> times);

}  // namespace player
