#pragma once

#include "player/draw/thumbnails.h"
#include "player/preset.h"
#include "player/window/preset_list.h"

namespace player {

/// Draws the thumbnails and names of the presets into the current ImGui window, in rows of the given width.
/// Returns the clicked preset, or null.
const NamedPreset* drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails,
                                  float width);

}  // namespace player
