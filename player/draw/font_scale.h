#pragma once

namespace player {

/// Scale of the text and of the controls around it.
struct FontScale {
    /// Pixels per pixel of a 96-dpi display.
    float pixels = 1.0f;
    /// Pixels per window unit: more than 1 on a high-density display.
    float density = 1.0f;
    bool operator==(const FontScale&) const = default;
};

/// Sets font and style of the current ImGui context for this scale. The renderer must upload the font again.
void applyFontScale(const FontScale& scale);

}  // namespace player
