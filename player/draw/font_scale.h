#pragma once

namespace player {

/// How large letters and what stands around them are.
struct FontScale {
    /// Pixels to one of a plain display's.
    float pixels = 1.0f;
    /// Pixels to a unit of the window's, of which a dense display has several.
    float density = 1.0f;
    bool operator==(const FontScale&) const = default;
};

/// Gives the current ImGui context font and style of that scale. Its font's texture is another one
/// from then on.
void applyFontScale(const FontScale& scale);

}  // namespace player
