#pragma once

#include <filesystem>

#include "player/window/requests.h"

namespace player {

/// Draws a list of the user's recorded gestures and the shipped gestures into the current ImGui window. Adds the file
/// that the user chooses to `requests`.
void drawGestureList(const std::filesystem::path& recordedIn, Requests& requests);

}  // namespace player
