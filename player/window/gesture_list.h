#pragma once

#include <filesystem>

#include "player/window/requests.h"

namespace player {

/// Draws a list of the user's recorded gestures and the shipped gestures into the current ImGui window. Requests the
/// chosen file.
void drawGestureList(const std::filesystem::path& recordedIn, Requests& requests);

}  // namespace player
