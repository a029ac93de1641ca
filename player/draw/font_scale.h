#pragma once

namespace player {

/// Scale of the text and of the controls.
struct FontScale {
    /// Size in pixels, relative to the size on a display with 96 dpi.
    float pixels = 1.0f;
    /// Pixels per window unit: more than 1 on a high-density display.
    float density = 1.0f;
    bool operator==(const FontScale&) const = default;
};

/// Sets font and style of the current ImGui context for this scale. Afterwards, the renderer must upload the font
/// again.
void applyFontScale(const FontScale& scale);

}  // namespace player
