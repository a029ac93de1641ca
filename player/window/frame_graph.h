#pragma once

#include <span>

#include "player/window/window_session.h"

namespace player {

/// Where the time of the last frames went, into the current ImGui window: bars as high as their
/// data asks for, and the means in digits.
void drawFrameGraph(std::span<const FrameTimes> times);

}  // namespace player
