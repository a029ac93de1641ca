#pragma once

#include "desktop/preset.h"
#include "player/draw/thumbnails.h"
#include "player/window/preset_list.h"

namespace player {

/// Draws the thumbnails and names of the presets into the current ImGui window, in rows of the given width.
/// Returns the clicked preset, or null.
const desktop::NamedPreset* drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails,
                                           float width);

}  // namespace player
