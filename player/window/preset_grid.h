#pragma once

#include "player/draw/thumbnails.h"
#include "player/preset.h"
#include "player/window/preset_list.h"

namespace player {

/// The presets by picture and name into the current ImGui window, in rows of that width; the one
/// that was clicked, or null.
const NamedPreset* drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails,
                                  float width);

}  // namespace player
