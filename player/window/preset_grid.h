#pragma once

#include "player/draw/thumbnails.h"
#include "player/window/preset_list.h"
#include "player/window/requests.h"

namespace player {

/// Draws the thumbnails and names of the presets into the current ImGui window, in rows of the given width. A click on
/// a preset adds the preset to `requests`. The presets of the user have a menu with the commands to rename and to
/// delete them.
void drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails, float width,
                    Requests& requests);

}  // namespace player
